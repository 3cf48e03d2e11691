#include "platform/freedesktop/files/AtomicFileTest.h"

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
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::writeFileAtomically;
using testing::ElementsAre;

using AtomicFileCrashTest = AtomicFileTest;

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
