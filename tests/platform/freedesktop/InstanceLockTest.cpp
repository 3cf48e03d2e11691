#include "platform/freedesktop/InstanceLock.h"

#include "platform/freedesktop/Files.h"
#include "support/ChildProcess.h"
#include "support/PolledRunLoop.h"
#include "support/TemporaryDirectory.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <set>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

namespace fs = std::filesystem;
using freedesktop::Descriptor;
using freedesktop::HandOver;
using freedesktop::handOver;
using freedesktop::InstanceLock;
using freedesktop::InstanceRequest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto name = ":0";
const InstanceRequest showWindow{"show", "host id 2_TIME3"};

/// A pipe that tells another process something by being closed.
struct Signal {
    Descriptor told;
    Descriptor teller;

    Signal() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe(ends), 0);
        told = Descriptor{ends[0]};
        teller = Descriptor{ends[1]};
    }

    void tell() { teller = {}; }

    void wait() {
        tell();
        char nothing = 0;
        EXPECT_EQ(::read(told.get(), &nothing, 1), 0);
    }
};

/// A forked process that ends with what its function returns.
template <class Function>
pid_t fork(Function function) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(function());
    }
    return child;
}

int endOf(pid_t child) {
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

class InstanceLockTest : public testing::Test {
protected:
    InstanceLockTest() { ::setenv("XDG_RUNTIME_DIR", directory_.path().c_str(), 1); }

    /// Listens and keeps what comes.
    void listen(InstanceLock& lock) {
        lock.listen(loop_,
                    [this](const InstanceRequest& request) { requests_.push_back(request); });
    }

    /// Hands over from another thread while this one serves.
    HandOver handOverWhileServing(const InstanceRequest& request) {
        HandOver result;
        std::atomic<bool> isDone = false;
        std::thread other([&] {
            result = handOver(name, request);
            isDone = true;
        });
        EXPECT_TRUE(loop_.runUntil([&] { return isDone.load(); }));
        other.join();
        return result;
    }

    /// A process that holds the lock and serves until it is killed.
    pid_t startHolder(bool listens) {
        Signal holds;
        const pid_t holder = fork([&] {
            ::alarm(60);
            auto lock = InstanceLock::acquire(name);
            if (!lock) {
                return 1;
            }
            if (listens) {
                listen(*lock);
            }
            holds.tell();
            return loop_.runUntil([] { return false; }, 60s) ? 2 : 3;
        });
        holds.wait();
        return holder;
    }

    fs::path socketFile() const { return directory_.path() / "hollowfernpike-:0.socket"; }

    TemporaryDirectory directory_;
    PolledRunLoop loop_;
    std::vector<InstanceRequest> requests_;
};

// --- the lock ---

TEST_F(InstanceLockTest, oneHoldsItAtATime) {
    auto lock = InstanceLock::acquire(name);
    ASSERT_TRUE(lock);
    EXPECT_FALSE(InstanceLock::acquire(name));
    lock.reset();
    EXPECT_TRUE(InstanceLock::acquire(name));
}

TEST_F(InstanceLockTest, anotherProcessDoesNotGetItEither) {
    const auto lock = InstanceLock::acquire(name);
    EXPECT_EQ(endOf(fork([] { return InstanceLock::acquire(name) ? 1 : 0; })), 0);
}

TEST_F(InstanceLockTest, locksOfOtherNamesAreOthers) {
    std::vector<InstanceLock> locks;
    for (const auto* other : {":0", ":1", "host:0.1", "a/b", "..", "", "日本", "%2f", "/"}) {
        auto lock = InstanceLock::acquire(other);
        ASSERT_TRUE(lock) << other;
        EXPECT_FALSE(InstanceLock::acquire(other)) << other;
        locks.push_back(std::move(*lock));
        listen(locks.back());
    }
    EXPECT_THAT(namesIn(directory_.path()), testing::SizeIs(2 * locks.size()));
    locks.clear();
    EXPECT_THAT(namesIn(directory_.path()), testing::Each(testing::EndsWith(".lock")));
}

TEST_F(InstanceLockTest, aMovedLockIsStillHeld) {
    auto first = InstanceLock::acquire(name);
    listen(*first);
    std::optional<InstanceLock> second = std::move(first);
    EXPECT_FALSE(InstanceLock::acquire(name));
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    second = InstanceLock::acquire("another");
    EXPECT_TRUE(InstanceLock::acquire(name));
}

TEST_F(InstanceLockTest, filesAreTheUsersAloneAndStayWhenDirectoriesAreCleanedUp) {
    auto lock = InstanceLock::acquire(name);
    listen(*lock);
    for (const auto& file : namesIn(directory_.path())) {
        struct stat status {};
        ASSERT_EQ(::stat((directory_.path() / file).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 01600U) << file;
    }
}

TEST_F(InstanceLockTest, programsThatAreStartedMeanwhileDoNotKeepIt) {
    auto lock = InstanceLock::acquire(name);
    listen(*lock);
    const ChildProcess child({"sleep", "60"});
    lock.reset();
    // Until it runs, the new process is a copy of this one, descriptors and all.
    EXPECT_TRUE(waitUntil([] { return InstanceLock::acquire(name).has_value(); }));
}

TEST_F(InstanceLockTest, ofTenStartsAtOnceOneWinsAndTheOthersHandOver) {
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

// --- handing over ---

TEST_F(InstanceLockTest, aRequestArrivesAsItWas) {
    auto lock = InstanceLock::acquire(name);
    listen(*lock);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_TRUE(handOverWhileServing({"設定", ""}).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow, InstanceRequest{"設定", ""}));
}

TEST_F(InstanceLockTest, aRequestWaitsForAHolderThatIsStillStarting) {
    auto lock = InstanceLock::acquire(name);
    std::atomic<bool> isTaken = false;
    std::atomic<bool> isTrying = false;
    std::thread other([&] {
        isTrying = true;
        isTaken = handOver(name, showWindow).isTaken;
    });
    EXPECT_TRUE(waitUntil([&] { return isTrying.load(); }));
    listen(*lock);
    EXPECT_TRUE(loop_.runUntil([&] { return isTaken.load(); }));
    other.join();
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

TEST_F(InstanceLockTest, aHolderThatDoesNotAnswerIsGivenUp) {
    const auto lock = InstanceLock::acquire(name);
    const auto result = handOver(name, showWindow, 30ms);
    EXPECT_FALSE(result.isTaken);
    EXPECT_FALSE(result.lock);
}

TEST_F(InstanceLockTest, aRequestThatWasGivenUpIsNotCarriedOutLater) {
    auto lock = InstanceLock::acquire(name);
    listen(*lock);
    EXPECT_FALSE(handOver(name, {"late", ""}, 30ms).isTaken);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

TEST_F(InstanceLockTest, aHolderThatWasStoppedIsGivenUp) {
    const pid_t holder = startHolder(true);
    ::kill(holder, SIGSTOP);
    const auto result = handOver(name, showWindow, 30ms);
    EXPECT_FALSE(result.isTaken);
    EXPECT_FALSE(result.lock);
    ::kill(holder, SIGKILL);
    EXPECT_EQ(endOf(holder), -SIGKILL);
}

TEST_F(InstanceLockTest, aFreeLockIsTakenInsteadOfHandingOver) {
    const auto result = handOver(name, showWindow);
    EXPECT_FALSE(result.isTaken);
    ASSERT_TRUE(result.lock);
    EXPECT_FALSE(InstanceLock::acquire(name));
}

TEST_F(InstanceLockTest, afterAKilledHolderTheNextOneWins) {
    const pid_t holder = startHolder(true);
    EXPECT_FALSE(InstanceLock::acquire(name));
    EXPECT_TRUE(handOver(name, showWindow).isTaken);
    ::kill(holder, SIGKILL);
    EXPECT_EQ(endOf(holder), -SIGKILL);
    EXPECT_TRUE(fs::is_socket(socketFile()));
    auto lock = InstanceLock::acquire(name);
    ASSERT_TRUE(lock);
    listen(*lock);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

TEST_F(InstanceLockTest, aHolderThatIsKilledMeanwhileLeavesTheLock) {
    for (const bool listens : {false, true}) {
        const pid_t holder = startHolder(listens);
        ::kill(holder, SIGSTOP);
        std::thread other([&] { ::kill(holder, SIGKILL); });
        const auto result = handOver(name, showWindow);
        other.join();
        EXPECT_FALSE(result.isTaken);
        EXPECT_TRUE(result.lock);
        EXPECT_EQ(endOf(holder), -SIGKILL);
    }
}

TEST_F(InstanceLockTest, anActionThatIsNoLineIsRefusedAtOnce) {
    EXPECT_THROW(handOver(name, {"", ""}), std::invalid_argument);
    EXPECT_THROW(handOver(name, {"a\nb", ""}), std::invalid_argument);
    EXPECT_THAT(namesIn(directory_.path()), IsEmpty());
}

TEST_F(InstanceLockTest, theHandlerMayDestroyTheLock) {
    auto lock = InstanceLock::acquire(name);
    lock->listen(loop_, [&](const InstanceRequest& request) {
        lock.reset();
        requests_.push_back(request);
    });
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow));
    EXPECT_EQ(loop_.watched(), 0U);
    EXPECT_FALSE(fs::exists(socketFile()));
    EXPECT_TRUE(InstanceLock::acquire(name));
}

TEST_F(InstanceLockTest, listeningAgainReplacesTheHandler) {
    auto lock = InstanceLock::acquire(name);
    lock->listen(loop_, [](const InstanceRequest&) { ADD_FAILURE(); });
    listen(*lock);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

// --- failures ---

TEST_F(InstanceLockTest, aLockFileThatCannotBeUsedIsNamed) {
    fs::create_directory(directory_.path() / "hollowfernpike-:0.lock");
    EXPECT_EQ(failureOf([] { InstanceLock::acquire(name); }), std::errc::is_a_directory);
    fs::create_symlink("elsewhere", directory_.path() / "hollowfernpike-:1.lock");
    EXPECT_EQ(failureOf([] { InstanceLock::acquire(":1"); }),
              std::errc::too_many_symbolic_link_levels);
    EXPECT_FALSE(fs::exists(directory_.path() / "elsewhere"));
}

TEST_F(InstanceLockTest, aSocketThatCannotBeMadeIsNamed) {
    fs::create_directory(socketFile());
    auto lock = InstanceLock::acquire(name);
    ASSERT_TRUE(lock);
    EXPECT_EQ(failureOf([&] { listen(*lock); }), std::errc::address_in_use);
    const std::string longName(90, 'n');
    auto longLock = InstanceLock::acquire(longName);
    ASSERT_TRUE(longLock);
    EXPECT_EQ(failureOf([&] { listen(*longLock); }), std::errc::filename_too_long);
}

TEST_F(InstanceLockTest, aDirectoryWithALongPathIsNoObstacle) {
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
