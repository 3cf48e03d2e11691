#include "platform/freedesktop/files/FileManager.h"

#include "support/Files.h"
#include "support/Privileges.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

namespace fs = std::filesystem;

class FileManagerTest : public testing::Test {
protected:
    fs::path folder() const { return directory_.path(); }
    fs::path file() const { return folder() / "file"; }

    std::error_code readFailure(const fs::path& path) {
        return failureOf([&] { files_.readFile(path); });
    }
    std::error_code createFailure(const fs::path& path) {
        return failureOf([&] { files_.createDirectory(path); });
    }

    TemporaryDirectory directory_;
    freedesktop::FileManager files_;
};

// --- folders ---

TEST_F(FileManagerTest, MakesAFolderWithItsParentsForTheUserAlone) {
    files_.createDirectory(folder() / "a/b/c");
    for (const auto* made : {"a", "a/b", "a/b/c"}) {
        struct stat status = {};
        ASSERT_EQ(::stat((folder() / made).c_str(), &status), 0) << made;
        EXPECT_EQ(status.st_mode & 07777, 0700U) << made;
    }
}

TEST_F(FileManagerTest, AFolderThatExistsIsNoErrorAndStaysAsItIs) {
    fs::create_directory(folder() / "a");
    ASSERT_EQ(::chmod((folder() / "a").c_str(), 0751), 0);
    files_.createDirectory(folder() / "a");
    files_.createDirectory(folder() / "a/");
    files_.createDirectory("/");
    EXPECT_EQ(fs::status(folder() / "a").permissions(), fs::perms{0751});
}

TEST_F(FileManagerTest, MakesFoldersFromOddlyWrittenPaths) {
    files_.createDirectory(folder() / "a//b/./c/");
    EXPECT_TRUE(fs::is_directory(folder() / "a/b/c"));
    fs::current_path(folder());
    files_.createDirectory("x/y");
    EXPECT_TRUE(fs::is_directory(folder() / "x/y"));
}

TEST_F(FileManagerTest, ALinkToAFolderIsOne) {
    fs::create_directory(folder() / "real");
    fs::create_directory_symlink("real", folder() / "link");
    files_.createDirectory(folder() / "link");
    files_.createDirectory(folder() / "link/below");
    EXPECT_TRUE(fs::is_directory(folder() / "real/below"));
}

TEST_F(FileManagerTest, AFolderCannotBeMadeOverOrBelowAFile) {
    putFile(file(), "a file");
    EXPECT_EQ(createFailure(file()), std::errc::not_a_directory);
    EXPECT_EQ(createFailure(file() / "below/it"), std::errc::not_a_directory);
    fs::create_symlink("missing", folder() / "broken");
    EXPECT_EQ(createFailure(folder() / "broken"), std::errc::not_a_directory);
    EXPECT_EQ(createFailure(folder() / "broken/below"), std::errc::not_a_directory);
    EXPECT_EQ(createFailure(""), std::errc::no_such_file_or_directory);
    EXPECT_EQ(createFailure(folder() / std::string(256, 'n')), std::errc::filename_too_long);
}

TEST_F(FileManagerTest, AFolderCannotBeMadeWhereTheUserMayNotWrite) {
    ASSERT_EQ(::chmod(folder().c_str(), 0555), 0);
    const auto create = [this] {
        ::_exit(becomeOrdinaryUser() &&
                        createFailure(folder() / "a/b") == std::errc::permission_denied
                    ? 0
                    : 1);
    };
    EXPECT_EXIT(create(), testing::ExitedWithCode(0), "");
}

// --- existence ---

TEST_F(FileManagerTest, KnowsWhatExists) {
    EXPECT_FALSE(files_.fileExists(file()));
    EXPECT_FALSE(files_.fileExists(""));
    putFile(file(), "");
    EXPECT_TRUE(files_.fileExists(file()));
    EXPECT_TRUE(files_.fileExists(folder()));
    EXPECT_FALSE(files_.fileExists(file() / "below"));
    EXPECT_FALSE(files_.fileExists(folder() / std::string(300, 'n')));
}

TEST_F(FileManagerTest, ALinkExistsIfItsTargetDoes) {
    fs::create_symlink("target", file());
    EXPECT_FALSE(files_.fileExists(file()));
    putFile(folder() / "target", "");
    EXPECT_TRUE(files_.fileExists(file()));
    fs::create_symlink("loop", folder() / "loop");
    EXPECT_FALSE(files_.fileExists(folder() / "loop"));
}

// --- reading ---

TEST_F(FileManagerTest, ReadsWholeFiles) {
    for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 3000000U}) {
        std::string bytes(size, '\0');
        for (std::size_t index = 0; index < size; ++index) {
            bytes[index] = static_cast<char>(index % 251);
        }
        putFile(file(), bytes);
        EXPECT_EQ(files_.readFile(file()), bytes) << size;
    }
}

TEST_F(FileManagerTest, ReadsThroughLinks) {
    putFile(folder() / "target", "text");
    fs::create_symlink("target", file());
    EXPECT_EQ(files_.readFile(file()), "text");
}

TEST_F(FileManagerTest, ReadsFilesThatTellNoSize) {
    EXPECT_EQ(files_.readFile("/proc/self/stat").substr(0, std::to_string(::getpid()).size() + 1),
              std::to_string(::getpid()) + ' ');
}

TEST_F(FileManagerTest, CannotReadWhatIsNotThereOrNoFile) {
    EXPECT_EQ(readFailure(file()), std::errc::no_such_file_or_directory);
    EXPECT_EQ(readFailure(""), std::errc::no_such_file_or_directory);
    EXPECT_EQ(readFailure(folder()), std::errc::is_a_directory);
    putFile(file(), "a file");
    EXPECT_EQ(readFailure(file() / "below"), std::errc::not_a_directory);
    fs::create_symlink("loop", folder() / "loop");
    EXPECT_EQ(readFailure(folder() / "loop"), std::errc::too_many_symbolic_link_levels);
}

TEST_F(FileManagerTest, DoesNotWaitForPipesAndDevices) {
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(readFailure(file()), std::errc::invalid_argument);
    EXPECT_EQ(readFailure("/dev/zero"), std::errc::invalid_argument);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto path = (folder() / "socket").string();
    path.copy(address.sun_path, sizeof address.sun_path - 1); // NOLINT(*-array-to-pointer-decay)
    const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
    ASSERT_EQ(::bind(socket, generic, sizeof address), 0);
    EXPECT_EQ(readFailure(path), std::errc::no_such_device_or_address);
    ::close(socket);
}

TEST_F(FileManagerTest, CannotReadWhatTheUserMayNot) {
    putFile(file(), "secret");
    ASSERT_EQ(::chmod(file().c_str(), 0), 0);
    ASSERT_EQ(::chmod(folder().c_str(), 0755), 0);
    const auto read = [this] {
        ::_exit(becomeOrdinaryUser() && files_.fileExists(file()) &&
                        readFailure(file()) == std::errc::permission_denied
                    ? 0
                    : 1);
    };
    EXPECT_EXIT(read(), testing::ExitedWithCode(0), "");
}

TEST_F(FileManagerTest, RefusesFilesBeyondAllMeasure) {
    putFile(file(), "");
    for (const auto size : {(std::uintmax_t{1} << 24) + 1, std::uintmax_t{1} << 42}) {
        fs::resize_file(file(), size);
        EXPECT_EQ(readFailure(file()), std::errc::file_too_large);
    }
}

TEST_F(FileManagerTest, ReadsUpToItsLimitAlsoOfAFileThatGrowsMeanwhile) {
    const fs::path grown = "/proc/version"; // tells no size, as if all of it came later
    ASSERT_EQ(fs::file_size(grown), 0U);
    const auto text = files_.readFile(grown);
    putFile(file(), text);
    for (const auto& path : {grown, file()}) {
        freedesktop::FileManager justEnough{text.size()};
        freedesktop::FileManager tooLittle{text.size() - 1};
        EXPECT_EQ(justEnough.readFile(path), text);
        EXPECT_EQ(failureOf([&] { tooLittle.readFile(path); }), std::errc::file_too_large) << path;
    }
}

// --- writing ---

TEST_F(FileManagerTest, WritesWhatItReads) {
    files_.writeFileAtomically(file(), "text");
    EXPECT_EQ(files_.readFile(file()), "text");
    EXPECT_EQ(namesIn(folder()), std::vector<std::string>{"file"});
}

} // namespace
} // namespace hollowfernpike::test
