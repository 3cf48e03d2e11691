#include "platform/freedesktop/AtomicFile.h"

#include "platform/freedesktop/Files.h"
#include "support/Privileges.h"
#include "support/TemporaryDirectory.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <iterator>
#include <random>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::writeFileAtomically;
using testing::ElementsAre;
namespace fs = std::filesystem;

class AtomicFileTest : public testing::Test {
protected:
    fs::path folder() const { return directory_.path(); }
    fs::path file() const { return folder() / "file"; }

    static std::error_code failure(const fs::path& path, std::string_view data = "new") {
        return failureOf([&] { writeFileAtomically(path, data); });
    }

    static mode_t modeOf(const fs::path& path) {
        struct stat status {};
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TemporaryDirectory directory_;
};

TEST_F(AtomicFileTest, makesANewFileForTheUserAlone) {
    writeFileAtomically(file(), "new");
    EXPECT_EQ(contentsOf(file()), "new");
    EXPECT_EQ(modeOf(file()), 0600U);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, replacesAFileByAnotherOne) {
    putFile(file(), "a longer old text");
    fs::create_hard_link(file(), folder() / "old");
    writeFileAtomically(file(), "new");
    EXPECT_EQ(contentsOf(file()), "new");
    EXPECT_EQ(contentsOf(folder() / "old"), "a longer old text");
}

TEST_F(AtomicFileTest, writesNothingAndAnyBytes) {
    const std::string bytes("\0\xFF\n\r\0", 5);
    writeFileAtomically(file(), bytes);
    EXPECT_EQ(contentsOf(file()), bytes);
    writeFileAtomically(file(), "");
    EXPECT_EQ(contentsOf(file()), "");
    EXPECT_TRUE(fs::exists(file()));
}

TEST_F(AtomicFileTest, writesMoreThanOneSystemCallTakes) {
    std::string bytes(40 << 20, 'x');
    bytes.back() = 'y';
    writeFileAtomically(file(), bytes);
    EXPECT_EQ(contentsOf(file()), bytes);
}

TEST_F(AtomicFileTest, keepsTheModeWhateverTheMask) {
    putFile(file(), "old");
    for (const auto mode : {0640U, 0666U, 0400U, 0755U, 0600U}) {
        ASSERT_EQ(::chmod(file().c_str(), mode), 0);
        const auto mask = ::umask(0777);
        writeFileAtomically(file(), "new");
        ::umask(mask);
        EXPECT_EQ(modeOf(file()), mode);
    }
}

/// A group that an ordinary user may give files to: a further one, for whoever is in several.
gid_t ownGroup() {
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    EXPECT_EQ(::getgroups(static_cast<int>(groups.size()), groups.data()), std::ssize(groups));
    const auto further = std::ranges::find_if(groups, [](gid_t g) { return g != ::getegid(); });
    return further == groups.end() ? ::getegid() : *further;
}

TEST_F(AtomicFileTest, keepsTheOwnerWhereTheSystemLetsUs) {
    putFile(file(), "old");
    uid_t user = 12345;
    gid_t group = 54321;
    if (::chown(file().c_str(), user, group) != 0) {
        user = ::geteuid();
        group = ownGroup();
        ASSERT_EQ(::chown(file().c_str(), user, group), 0);
    }
    writeFileAtomically(file(), "new");
    EXPECT_EQ(contentsOf(file()), "new");
    struct stat after {};
    ASSERT_EQ(::stat(file().c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, user);
    EXPECT_EQ(after.st_gid, group);
}

TEST_F(AtomicFileTest, writesAFileOfAnotherUserAsOurs) {
    putFile(file(), "old");
    ASSERT_EQ(::chmod(file().c_str(), 0644), 0);
    ASSERT_EQ(::chmod(folder().c_str(), 0777), 0);
    const auto write = [this] {
        ::_exit(becomeOrdinaryUser() && !failure(file()) && contentsOf(file()) == "new" ? 0 : 1);
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentsOf(file()), "new");
}

TEST_F(AtomicFileTest, takesANameAsLongAsTheFileSystemAllows) {
    const auto path = folder() / std::string(255, 'n');
    writeFileAtomically(path, "new");
    EXPECT_EQ(contentsOf(path), "new");
    EXPECT_EQ(failure(folder() / std::string(256, 'n')), std::errc::filename_too_long);
    EXPECT_THAT(namesIn(folder()), ElementsAre(path.filename().string()));
}

TEST_F(AtomicFileTest, takesARelativePath) {
    fs::current_path(folder());
    writeFileAtomically("file", "new");
    EXPECT_EQ(contentsOf(file()), "new");
    writeFileAtomically("./file", "newer");
    EXPECT_EQ(contentsOf(file()), "newer");
}

// --- symbolic links ---

class AtomicFileLinkTest : public AtomicFileTest {
protected:
    AtomicFileLinkTest() {
        fs::create_directory(folder() / "real");
        putFile(target(), "old");
    }

    fs::path target() const { return folder() / "real/target"; }

    void expectWrittenThrough(const fs::path& link) const {
        writeFileAtomically(link, "new");
        EXPECT_TRUE(fs::is_symlink(link));
        EXPECT_FALSE(fs::is_symlink(target()));
        EXPECT_EQ(contentsOf(target()), "new");
        EXPECT_THAT(namesIn(folder() / "real"), ElementsAre("target"));
    }
};

TEST_F(AtomicFileLinkTest, anAbsoluteLinkStaysOne) {
    fs::create_symlink(target(), file());
    expectWrittenThrough(file());
}

TEST_F(AtomicFileLinkTest, aRelativeLinkStaysOne) {
    fs::create_symlink("real/target", file());
    expectWrittenThrough(file());
    EXPECT_EQ(fs::read_symlink(file()), "real/target");
}

TEST_F(AtomicFileLinkTest, aRelativeLinkCountsFromWhereItReallyStands) {
    fs::create_directory(folder() / "real/links");
    fs::create_symlink("../target", folder() / "real/links/link");
    fs::create_directory_symlink("real/links", folder() / "short");
    writeFileAtomically(folder() / "short/link", "new");
    EXPECT_EQ(contentsOf(target()), "new");
    EXPECT_TRUE(fs::is_symlink(folder() / "real/links/link"));
}

TEST_F(AtomicFileLinkTest, aChainOfLinksStays) {
    fs::create_symlink("third", file());
    fs::create_symlink(folder() / "second", folder() / "third");
    fs::create_symlink("real/target", folder() / "second");
    expectWrittenThrough(file());
    EXPECT_TRUE(fs::is_symlink(folder() / "second"));
    EXPECT_TRUE(fs::is_symlink(folder() / "third"));
}

TEST_F(AtomicFileLinkTest, theModeIsThatOfTheTarget) {
    ASSERT_EQ(::chmod(target().c_str(), 0640), 0);
    fs::create_symlink("real/target", file());
    expectWrittenThrough(file());
    EXPECT_EQ(modeOf(target()), 0640U);
}

TEST_F(AtomicFileLinkTest, aBrokenLinkIsMended) {
    fs::remove(target());
    fs::create_symlink("real/target", file());
    expectWrittenThrough(file());
}

TEST_F(AtomicFileLinkTest, aLinkIntoAMissingFolderFails) {
    fs::create_symlink("missing/target", file());
    EXPECT_EQ(failure(file()), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(fs::is_symlink(file()));
}

TEST_F(AtomicFileLinkTest, aLoopFails) {
    fs::create_symlink("file", file());
    EXPECT_EQ(failure(file()), std::errc::too_many_symbolic_link_levels);
    fs::create_symlink("two", folder() / "one");
    fs::create_symlink("one", folder() / "two");
    EXPECT_EQ(failure(folder() / "one"), std::errc::too_many_symbolic_link_levels);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file", "one", "real", "two"));
}

TEST_F(AtomicFileLinkTest, aLinkToADeviceFailsAndTheDeviceStays) {
    fs::create_symlink("/dev/null", file());
    EXPECT_EQ(failure(file()), std::errc::invalid_argument);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

// --- failures ---

/// Writes with as much room as a file may have here: nothing, or some of what is asked.
std::error_code writeWithLimit(const fs::path& path, std::string_view data, rlim_t limit) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limits{limit, limit};
    if (::setrlimit(RLIMIT_FSIZE, &limits) != 0) {
        return std::error_code{errno, std::generic_category()};
    }
    return failureOf([&] { writeFileAtomically(path, data); });
}

TEST_F(AtomicFileTest, withoutRoomTheOldFileStandsAndNothingIsLeft) {
    for (const rlim_t limit : {0U, 1U, 4096U, 99999U}) {
        putFile(file(), "old");
        const auto write = [&] {
            const auto code = writeWithLimit(file(), std::string(100000, 'x'), limit);
            ::_exit(code == std::errc::file_too_large ? 0 : 1);
        };
        EXPECT_EXIT(write(), testing::ExitedWithCode(0), "") << limit;
        EXPECT_EQ(contentsOf(file()), "old");
        EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
    }
}

TEST_F(AtomicFileTest, withJustEnoughRoomItSucceeds) {
    const auto write = [&] {
        ::_exit(writeWithLimit(file(), std::string(100000, 'x'), 100000) ? 1 : 0);
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentsOf(file()), std::string(100000, 'x'));
}

TEST_F(AtomicFileTest, inAFolderThatMayNotBeWrittenItFails) {
    putFile(file(), "old");
    ASSERT_EQ(::chmod(folder().c_str(), 0555), 0);
    const auto write = [this] {
        ::_exit(becomeOrdinaryUser() && failure(file()) == std::errc::permission_denied ? 0 : 1);
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentsOf(file()), "old");
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, inAFolderThatMayBeWrittenButNotReadItSucceeds) {
    ASSERT_EQ(::chmod(folder().c_str(), 0333), 0);
    const auto write = [this] { ::_exit(becomeOrdinaryUser() && !failure(file()) ? 0 : 1); };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    ASSERT_EQ(::chmod(folder().c_str(), 0777), 0);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, whereNoFileCanBeItFails) {
    putFile(file(), "old");
    EXPECT_EQ(failure(folder() / "missing/file"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(failure(file() / "below"), std::errc::not_a_directory);
    EXPECT_EQ(failure(folder()), std::errc::is_a_directory);
    EXPECT_EQ(failure(folder() / "missing/"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(failure(""), std::errc::no_such_file_or_directory);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, aPipeIsNotReplaced) {
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(failure(file()), std::errc::invalid_argument);
    EXPECT_TRUE(fs::is_fifo(file()));
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, theErrorNamesThePathThatWasAskedFor) {
    fs::create_symlink("missing/target", file());
    try {
        writeFileAtomically(file(), "new");
        FAIL() << "wrote into a missing folder";
    } catch (const platform::FileError& error) {
        EXPECT_EQ(error.path(), file());
        EXPECT_EQ(error.english(),
                  "Cannot write \"" + file().string() + "\": No such file or directory");
        EXPECT_EQ(error.japanese(), "「" + file().string() +
                                        "」に書き込めません: ファイルまたはフォルダがありません");
    }
}

// --- left-overs and crashes ---

constexpr auto leftOver = ".hollowfernpike-a1B2c3";

void makeOld(const fs::path& path, std::chrono::minutes age) {
    fs::last_write_time(path, fs::last_write_time(path) - age);
}

TEST_F(AtomicFileTest, removesWhatKilledProcessesLeftLongAgo) {
    putFile(folder() / leftOver, "half");
    makeOld(folder() / leftOver, std::chrono::minutes{61});
    writeFileAtomically(file(), "new");
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, leavesWhatAnotherWriterMayStillNeed) {
    putFile(folder() / leftOver, "half");
    makeOld(folder() / leftOver, std::chrono::minutes{58});
    writeFileAtomically(file(), "new");
    EXPECT_THAT(namesIn(folder()), ElementsAre(leftOver, "file"));
}

TEST_F(AtomicFileTest, leavesFilesOfOtherNamesAndKinds) {
    const std::array<std::string, 4> names{".hollowfernpike-long-name", ".hollowfernpike-a",
                                           "hollowfernpike-a1B2c3", ".other-a1B2c3"};
    for (const auto& name : names) {
        putFile(folder() / name, "theirs");
        makeOld(folder() / name, std::chrono::minutes{100});
    }
    fs::create_directory(folder() / leftOver);
    makeOld(folder() / leftOver, std::chrono::minutes{100});
    fs::create_symlink(names[0], folder() / ".hollowfernpike-linked");
    writeFileAtomically(file(), "new");
    EXPECT_EQ(namesIn(folder()).size(), names.size() + 3);
}

std::string version(char letter) {
    std::string text(50000, letter);
    return text;
}

[[noreturn]] void writeForEver(const fs::path& path) {
    for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
        writeFileAtomically(path, version(letter));
    }
}

bool isWhole(const std::string& contents) {
    return !contents.empty() && contents == version(contents.front());
}

TEST_F(AtomicFileTest, aProcessKilledAtAnyMomentLeavesTheFileWhole) {
    std::mt19937 random{20240229};
    std::uniform_int_distribution<int> microseconds{0, 4000};
    writeFileAtomically(file(), version('0'));
    for (int round = 0; round < 50; ++round) {
        const auto before = contentsOf(file());
        const pid_t writer = ::fork();
        ASSERT_GE(writer, 0);
        if (writer == 0) {
            writeForEver(file());
        }
        EXPECT_TRUE(waitUntil([&] { return contentsOf(file()) != before; }));
        ::usleep(static_cast<useconds_t>(microseconds(random)));
        ::kill(writer, SIGKILL);
        ASSERT_EQ(::waitpid(writer, nullptr, 0), writer);
        ASSERT_TRUE(isWhole(contentsOf(file()))) << round;
    }
    for (const auto& name : namesIn(folder())) {
        makeOld(folder() / name, std::chrono::minutes{100});
    }
    writeFileAtomically(file(), "last");
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileTest, writersAtTheSameTimeDoNotMix) {
    std::vector<std::thread> writers;
    for (char letter = 'a'; letter < 'e'; ++letter) {
        writers.emplace_back([letter, path = file()] {
            for (int round = 0; round < 25; ++round) {
                writeFileAtomically(path, version(letter));
                EXPECT_TRUE(isWhole(contentsOf(path)));
            }
        });
    }
    for (auto& writer : writers) {
        writer.join();
    }
    EXPECT_TRUE(isWhole(contentsOf(file())));
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

} // namespace
} // namespace hollowfernpike::test
