#include "platform/freedesktop/instance/InstanceLockTest.h"

#include "support/ChildProcess.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <cstdlib>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace hollowfernpike::test {
namespace {

TEST_F(InstanceLockTest, OneHoldsItAtATime) {
    auto lock = InstanceLock::acquire(name);
    ASSERT_TRUE(lock);
    EXPECT_FALSE(InstanceLock::acquire(name));
    lock.reset();
    EXPECT_TRUE(InstanceLock::acquire(name));
}

TEST_F(InstanceLockTest, AnotherProcessDoesNotGetItEither) {
    const auto lock = InstanceLock::acquire(name);
    EXPECT_EQ(endOf(fork([] { return InstanceLock::acquire(name) ? 1 : 0; })), 0);
}

TEST_F(InstanceLockTest, LocksOfOtherNamesAreOthers) {
    auto lock = InstanceLock::acquire(name);
    auto other = InstanceLock::acquire("other");
    ASSERT_TRUE(other);
    EXPECT_FALSE(InstanceLock::acquire("other"));
    EXPECT_THAT(
        namesIn(directory_.path()),
        testing::UnorderedElementsAre("some.lock", "some.socket", "other.lock", "other.socket"));
    lock.reset();
    other.reset();
    EXPECT_THAT(namesIn(directory_.path()), testing::Each(testing::EndsWith(".lock")));
}

TEST_F(InstanceLockTest, FilesAreTheUsersAloneAndStayWhenDirectoriesAreCleanedUp) {
    const auto lock = InstanceLock::acquire(name);
    EXPECT_THAT(namesIn(directory_.path()), testing::SizeIs(2));
    for (const auto& file : namesIn(directory_.path())) {
        struct stat status = {};
        ASSERT_EQ(::stat((directory_.path() / file).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 01600U) << file;
    }
}

TEST_F(InstanceLockTest, ProgramsThatAreStartedMeanwhileDoNotKeepIt) {
    auto lock = InstanceLock::acquire(name);
    listen(*lock);
    const ChildProcess child({"sleep", "60"});
    lock.reset();
    // Until it runs its program, the new process is a copy of this one and has its descriptors.
    EXPECT_TRUE(waitUntil([] { return InstanceLock::acquire(name) != nullptr; }));
}

TEST_F(InstanceLockTest, OfTenStartsAtOnceOneWinsAndTheOthersHandOver) {
    constexpr int starts = 10;
    constexpr int won = 100;
    Signal go;
    std::vector<pid_t> children;
    for (int number = 0; number < starts; ++number) {
        children.push_back(fork([&] {
            go.wait();
            const InstanceRequest request{"start" + std::to_string(number), ""};
            auto lock = InstanceLock::acquire(name);
            if (!lock) {
                return handOver(name, request, 60s).isTaken ? 0 : 1;
            }
            listen(*lock);
            std::set<std::string> others;
            const bool allCame = loop_.runUntil(
                [&] {
                    for (const auto& other : requests_) {
                        others.insert(other.action);
                    }
                    return others.size() == starts - 1;
                },
                60s);
            return allCame && !others.contains(request.action) ? won : 2;
        }));
    }
    go.tell();
    std::multiset<int> ends;
    for (const pid_t child : children) {
        ends.insert(endOf(child));
    }
    EXPECT_EQ(ends.count(won), 1U);
    EXPECT_EQ(ends.count(0), starts - 1U);
}

// --- failures ---

TEST_F(InstanceLockTest, ALockFileThatCannotBeUsedIsNamed) {
    fs::create_directory(directory_.path() / "some.lock");
    EXPECT_EQ(failureOf([] { InstanceLock::acquire(name); }), std::errc::is_a_directory);
    fs::create_symlink("elsewhere", directory_.path() / "other.lock");
    EXPECT_EQ(failureOf([] { InstanceLock::acquire("other"); }),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_FALSE(fs::exists(directory_.path() / "elsewhere"));
}

TEST_F(InstanceLockTest, ASocketThatCannotBeMadeIsNamed) {
    fs::create_directory(socketFile());
    EXPECT_EQ(failureOf([] { InstanceLock::acquire(name); }), std::errc::is_a_directory);
    EXPECT_EQ(failureOf([] { InstanceLock::acquire(std::string(90, 'n')); }),
              std::errc::filename_too_long);
    EXPECT_THAT(namesIn(directory_.path()),
                testing::Not(testing::Contains(testing::EndsWith(".new"))));
}

TEST_F(InstanceLockTest, ADirectoryWithALongPathIsNoObstacle) {
    const auto deep = directory_.path() / std::string(120, 'd');
    fs::create_directory(deep);
    fs::permissions(deep, fs::perms::owner_all);
    ::setenv("XDG_RUNTIME_DIR", deep.c_str(), 1);
    auto lock = InstanceLock::acquire(name);
    ASSERT_TRUE(lock);
    listen(*lock);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_THAT(namesIn(deep), testing::SizeIs(2));
}

} // namespace
} // namespace hollowfernpike::test
