#include "platform/freedesktop/files/AtomicFileTest.h"

#include "support/Privileges.h"

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::writeFileAtomically;
using testing::ElementsAre;

using AtomicFileFailureTest = AtomicFileTest;

/// Writes while no file may become larger than `limit`.
std::error_code writeWithLimit(const fs::path& path, std::string_view data, rlim_t limit) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limits{limit, limit};
    if (::setrlimit(RLIMIT_FSIZE, &limits) != 0) {
        return std::error_code{errno, std::generic_category()};
    }
    return failureOf([&] { writeFileAtomically(path, data); });
}

TEST_F(AtomicFileFailureTest, WithoutRoomTheOldFileStandsAndNothingIsLeft) {
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

TEST_F(AtomicFileFailureTest, WithJustEnoughRoomItSucceeds) {
    const auto write = [&] {
        ::_exit(writeWithLimit(file(), std::string(100000, 'x'), 100000) ? 1 : 0);
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentsOf(file()), std::string(100000, 'x'));
}

TEST_F(AtomicFileFailureTest, InAFolderThatMayNotBeWrittenItFails) {
    putFile(file(), "old");
    ASSERT_EQ(::chmod(folder().c_str(), 0555), 0);
    const auto write = [this] {
        ::_exit(becomeOrdinaryUser() && failure(file()) == std::errc::permission_denied ? 0 : 1);
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentsOf(file()), "old");
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileFailureTest, InAFolderThatMayBeWrittenButNotReadItSucceeds) {
    ASSERT_EQ(::chmod(folder().c_str(), 0333), 0);
    const auto write = [this] { ::_exit(becomeOrdinaryUser() && !failure(file()) ? 0 : 1); };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0), "");
    ASSERT_EQ(::chmod(folder().c_str(), 0777), 0);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileFailureTest, WhereNoFileCanBeItFails) {
    putFile(file(), "old");
    EXPECT_EQ(failure(folder() / "missing/file"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(failure(file() / "below"), std::errc::not_a_directory);
    EXPECT_EQ(failure(folder()), std::errc::is_a_directory);
    EXPECT_EQ(failure(folder() / "missing/"), std::errc::no_such_file_or_directory);
    EXPECT_EQ(failure(""), std::errc::no_such_file_or_directory);
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileFailureTest, APipeIsNotReplaced) {
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    EXPECT_EQ(failure(file()), std::errc::invalid_argument);
    EXPECT_TRUE(fs::is_fifo(file()));
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileFailureTest, TheErrorNamesThePathThatWasAskedFor) {
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

} // namespace
} // namespace hollowfernpike::test
