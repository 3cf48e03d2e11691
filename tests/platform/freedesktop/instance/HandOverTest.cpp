#include "platform/freedesktop/instance/InstanceListener.h"
#include "platform/freedesktop/instance/InstanceLockTest.h"
#include "support/Files.h"

#include <array>
#include <atomic>
#include <csignal>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {
namespace {

using freedesktop::PrivateDirectory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Tells that a file has been opened.
class Openings {
public:
    explicit Openings(const fs::path& file) : descriptor_(::inotify_init1(IN_CLOEXEC)) {
        EXPECT_GE(::inotify_add_watch(descriptor_.get(), file.c_str(), IN_OPEN), 0);
    }

    /// Waits until the file has been opened since this object was made; false if that does not
    /// happen.
    bool wait() const {
        constexpr int bound = 10000;
        pollfd opened{descriptor_.get(), POLLIN, 0};
        return ::poll(&opened, 1, bound) == 1;
    }

private:
    Descriptor descriptor_;
};

/// Takes the lock like a holder that does not listen yet.
Descriptor lockAlone(const fs::path& file) {
    Descriptor lock{::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)};
    EXPECT_EQ(::flock(lock.get(), LOCK_EX), 0);
    return lock;
}

/// Waits for a client and its request, and leaves it without an answer.
Descriptor requestOn(const Descriptor& socket) {
    constexpr int bound = 10000;
    pollfd readable{socket.get(), POLLIN, 0};
    ::poll(&readable, 1, bound);
    Descriptor client{::accept(socket.get(), nullptr, nullptr)};
    std::array<char, freedesktop::longestRequest> request{};
    EXPECT_GT(::recv(client.get(), request.data(), request.size(), 0), 0);
    return client;
}

class HandOverTest : public InstanceLockTest {
protected:
    /// A process that holds the lock and serves until it is killed.
    pid_t startHolder() {
        Signal holds;
        const pid_t holder = fork([&] {
            ::alarm(60);
            auto lock = InstanceLock::acquire(name);
            if (!lock) {
                return 1;
            }
            listen(*lock);
            holds.tell();
            return loop_.runUntil([] { return false; }, 60s) ? 2 : 3;
        });
        holds.wait();
        return holder;
    }

    /// Hands over to a holder that `killer` kills meanwhile, and expects to get the lock.
    static void expectLockInstead(pid_t holder, std::thread& killer) {
        const auto result = handOver(name, showWindow);
        killer.join();
        EXPECT_FALSE(result.isTaken);
        EXPECT_TRUE(result.lock);
        EXPECT_EQ(endOf(holder), -SIGKILL);
    }
};

TEST_F(HandOverTest, ARequestArrivesAsItWas) {
    auto lock = InstanceLock::acquire(name);
    listen(*lock);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_TRUE(handOverWhileServing({"設定", ""}).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow, InstanceRequest{"設定", ""}));
}

TEST_F(HandOverTest, ARequestWaitsForAHolderThatIsStillStarting) {
    auto lock = InstanceLock::acquire(name);
    std::atomic<bool> isTaken = false;
    std::thread other([&] { isTaken = handOver(name, showWindow).isTaken; });
    listen(*lock);
    EXPECT_TRUE(loop_.runUntil([&] { return isTaken.load(); }));
    other.join();
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

TEST_F(HandOverTest, ARequestWaitsForAHolderThatCannotBeReachedYet) {
    const auto begun = lockAlone(lockFile());
    const Openings openings(lockFile());
    std::atomic<bool> isTaken = false;
    std::thread other([&] { isTaken = handOver(name, showWindow, 60s).isTaken; });
    EXPECT_TRUE(openings.wait()) << "nobody listens, so it tries to get the lock";
    const PrivateDirectory runtime(directory_.path());
    const auto socket = freedesktop::listeningSocket(runtime, socketFile().filename());
    const freedesktop::InstanceListener listener(
        socket, loop_, [this](const InstanceRequest& request) { requests_.push_back(request); });
    EXPECT_TRUE(loop_.runUntil([&] { return isTaken.load(); }));
    other.join();
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

TEST_F(HandOverTest, AHolderThatEndsBeforeItCanBeReachedLeavesTheLock) {
    auto begun = lockAlone(lockFile());
    std::thread other([&] { begun = {}; });
    const auto result = handOver(name, showWindow, 100ms);
    other.join();
    EXPECT_FALSE(result.isTaken);
    EXPECT_TRUE(result.lock);
}

TEST_F(HandOverTest, AHolderThatDoesNotAnswerIsGivenUp) {
    const auto lock = InstanceLock::acquire(name);
    const auto result = handOver(name, showWindow, 30ms);
    EXPECT_FALSE(result.isTaken);
    EXPECT_FALSE(result.lock);
}

TEST_F(HandOverTest, ARequestThatWasGivenUpIsNotCarriedOutLater) {
    auto lock = InstanceLock::acquire(name);
    listen(*lock);
    EXPECT_FALSE(handOver(name, {"late", ""}, 30ms).isTaken);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

TEST_F(HandOverTest, AHolderThatWasStoppedIsGivenUp) {
    const pid_t holder = startHolder();
    ::kill(holder, SIGSTOP);
    EXPECT_EQ(::waitpid(holder, nullptr, WUNTRACED), holder);
    const auto result = handOver(name, showWindow, 30ms);
    EXPECT_FALSE(result.isTaken);
    EXPECT_FALSE(result.lock);
    ::kill(holder, SIGKILL);
    EXPECT_EQ(endOf(holder), -SIGKILL);
}

TEST_F(HandOverTest, AFreeLockIsTakenInsteadOfHandingOver) {
    const auto result = handOver(name, showWindow);
    EXPECT_FALSE(result.isTaken);
    ASSERT_TRUE(result.lock);
    EXPECT_FALSE(InstanceLock::acquire(name));
}

TEST_F(HandOverTest, AfterAKilledHolderTheNextOneWins) {
    const pid_t holder = startHolder();
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

TEST_F(HandOverTest, AHolderThatIsKilledWhileItStartsLeavesTheLock) {
    Signal holds;
    const pid_t holder = fork([&] {
        ::alarm(60);
        const auto lock = InstanceLock::acquire(name);
        holds.tell();
        return ::pause();
    });
    holds.wait();
    std::thread other([&] { ::kill(holder, SIGKILL); });
    expectLockInstead(holder, other);
}

TEST_F(HandOverTest, AHolderThatIsKilledBeforeItAnswersLeavesTheLock) {
    Signal listens;
    Signal hasRequest;
    const pid_t holder = fork([&] {
        ::alarm(60);
        const auto lock = InstanceLock::acquire(name);
        const auto socket = freedesktop::listeningSocket(PrivateDirectory(directory_.path()),
                                                         socketFile().filename());
        listens.tell();
        const auto client = requestOn(socket);
        if (HasFailure()) {
            return 1;
        }
        hasRequest.tell();
        return ::pause();
    });
    listens.wait();
    std::thread other([&] {
        hasRequest.wait();
        ::kill(holder, SIGKILL);
    });
    expectLockInstead(holder, other);
}

TEST_F(HandOverTest, AnActionThatIsNoLineIsRefusedAtOnce) {
    EXPECT_THROW(handOver(name, {"", ""}), std::invalid_argument);
    EXPECT_THROW(handOver(name, {"a\nb", ""}), std::invalid_argument);
    EXPECT_THAT(namesIn(directory_.path()), IsEmpty());
}

TEST_F(HandOverTest, TheHandlerMayDestroyTheLock) {
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

TEST_F(HandOverTest, ListeningAgainReplacesTheHandler) {
    auto lock = InstanceLock::acquire(name);
    lock->listen(loop_, [](const InstanceRequest&) { ADD_FAILURE(); });
    listen(*lock);
    EXPECT_TRUE(handOverWhileServing(showWindow).isTaken);
    EXPECT_THAT(requests_, ElementsAre(showWindow));
}

} // namespace
} // namespace hollowfernpike::test
