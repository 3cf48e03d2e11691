#include "platform/freedesktop/AtomicFileTest.h"

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
using testing::UnorderedElementsAre;

using AtomicFileCrashTest = AtomicFileTest;

constexpr auto leftOver = ".hollowfernpike-a1B2c3";
constexpr auto linked = ".hollowfernpike-linked";

/// A link itself, not what it leads to.
void makeOld(const fs::path& path, std::chrono::minutes age) {
    const auto when = std::chrono::system_clock::now() - age;
    const timespec time{std::chrono::system_clock::to_time_t(when), 0};
    const std::array<timespec, 2> times{time, time};
    EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW), 0);
}

TEST_F(AtomicFileCrashTest, removesWhatKilledProcessesLeftLongAgo) {
    putFile(folder() / leftOver, "half");
    makeOld(folder() / leftOver, std::chrono::minutes{61});
    writeFileAtomically(file(), "new");
    EXPECT_THAT(namesIn(folder()), ElementsAre("file"));
}

TEST_F(AtomicFileCrashTest, leavesWhatAnotherWriterMayStillNeed) {
    putFile(folder() / leftOver, "half");
    makeOld(folder() / leftOver, std::chrono::minutes{58});
    writeFileAtomically(file(), "new");
    EXPECT_THAT(namesIn(folder()), ElementsAre(leftOver, "file"));
}

TEST_F(AtomicFileCrashTest, leavesFilesOfOtherNamesAndKinds) {
    const std::array<std::string, 4> names{".hollowfernpike-long-name", ".hollowfernpike-a",
                                           "hollowfernpike-a1B2c3", ".other-a1B2c3"};
    for (const auto& name : names) {
        putFile(folder() / name, "theirs");
        makeOld(folder() / name, std::chrono::minutes{100});
    }
    fs::create_directory(folder() / leftOver);
    makeOld(folder() / leftOver, std::chrono::minutes{100});
    fs::create_symlink(names[0], folder() / linked);
    makeOld(folder() / linked, std::chrono::minutes{100});
    writeFileAtomically(file(), "new");
    EXPECT_THAT(namesIn(folder()), UnorderedElementsAre(names[0], names[1], names[2], names[3],
                                                        leftOver, linked, "file"));
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

TEST_F(AtomicFileCrashTest, aProcessKilledAtAnyMomentLeavesTheFileWhole) {
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

TEST_F(AtomicFileCrashTest, writersAtTheSameTimeDoNotMix) {
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
