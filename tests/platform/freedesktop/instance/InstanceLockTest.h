#pragma once

#include "platform/freedesktop/instance/InstanceLock.h"
#include "support/TemporaryDirectory.h"
#include "support/fakes/PolledRunLoop.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace fs = std::filesystem;
using freedesktop::HandOver;
using freedesktop::handOver;
using freedesktop::InstanceLock;
using freedesktop::InstanceRequest;
using posix::Descriptor;

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

inline int endOf(pid_t child) {
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// A runtime directory of its own, for locks and the processes that want them.
class InstanceLockTest : public testing::Test {
protected:
    static constexpr auto name = "some";
    inline static const InstanceRequest showWindow{"show", "host id 2_TIME3"};

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

    fs::path lockFile() const { return directory_.path() / "some.lock"; }
    fs::path socketFile() const { return directory_.path() / "some.socket"; }

    TemporaryDirectory directory_;
    PolledRunLoop loop_;
    std::vector<InstanceRequest> requests_;
};

} // namespace hollowfernpike::test
