#include "platform/posix/AtomicFileTest.h"

#include "support/Privileges.h"
#include "support/WaitUntil.h"

#include <array>
#include <chrono>
#include <csignal>
#include <ctime>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using testing::ElementsAre;
using AtomicFileFailureTest = AtomicFileTest;
using AtomicFileCrashTest = AtomicFileTest;

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

/// Of a link it makes the link itself old, not what it leads to.
void makeOld(const fs::path& path) {
    const auto when = std::chrono::system_clock::now() - std::chrono::days{3};
    const timespec time{std::chrono::system_clock::to_time_t(when), 0};
    const std::array<timespec, 2> times{time, time};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW), 0);
}

TEST_F(AtomicFileCrashTest, LeavesEveryOtherFileWhateverItsNameAndAge) {
    putFile(folder() / ".hollowfernpike-backup", "theirs");
    putFile(folder() / ".hollowfernpike-abc123", "theirs");
    putFile(folder() / ".hollowfernpike-", "theirs");
    fs::create_directory(folder() / ".hollowfernpike-folder");
    fs::create_symlink("elsewhere", folder() / ".hollowfernpike-linked");
    const auto theirs = namesIn(folder());
    for (const auto& name : theirs) {
        makeOld(folder() / name);
    }
    writeFileAtomically(file(), "new");
    writeFileAtomically(file(), "newer");
    fs::remove(file());
    EXPECT_EQ(namesIn(folder()), theirs);
    EXPECT_EQ(contentsOf(folder() / ".hollowfernpike-backup"), "theirs");
    EXPECT_EQ(contentsOf(folder() / ".hollowfernpike-abc123"), "theirs");
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

TEST_F(AtomicFileCrashTest, AProcessKilledAtAnyMomentLeavesTheFileWhole) {
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
    writeFileAtomically(file(), "last");
    EXPECT_EQ(contentsOf(file()), "last");
}

TEST_F(AtomicFileCrashTest, WritersAtTheSameTimeDoNotMix) {
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
