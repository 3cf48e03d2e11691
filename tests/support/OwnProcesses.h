#pragma once

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <system_error>

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hollowfernpike::test {

/// A process namespace, which holds only the processes that are started in it; for the forked child
/// of a test. Throws std::system_error if the system does not let us make one.
class OwnProcesses {
public:
    /// Runs `body` there, and ends this process: with status 0 if the test has not failed by then.
    [[noreturn]] static void run(const std::function<void()>& body) {
        const auto user = ::geteuid();
        require(::unshare(CLONE_NEWPID | CLONE_NEWNS | (user == 0 ? 0 : CLONE_NEWUSER)) == 0);
        if (user != 0) {
            std::ofstream{"/proc/self/uid_map"} << user << ' ' << user << " 1";
        }
        const pid_t first = ::fork();
        if (first == 0) {
            require(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                    ::mount("proc", "/proc", "proc", 0, nullptr) == 0);
            body();
            ::_exit(testing::Test::HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
        }
        int status = EXIT_FAILURE;
        ::waitpid(first, &status, 0);
        ::_exit(WIFEXITED(status) ? WEXITSTATUS(status) : EXIT_FAILURE);
    }

    /// Makes this the number of the next process that is started.
    static void giveOutNext(pid_t number) {
        std::ofstream last{"/proc/sys/kernel/ns_last_pid"};
        last << number - 1 << std::flush;
        require(last.good());
    }

private:
    static void require(bool isDone) {
        if (!isDone) {
            throw std::system_error(errno, std::generic_category(), "processes of its own");
        }
    }
};

} // namespace hollowfernpike::test
