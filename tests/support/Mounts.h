#pragma once

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace hollowfernpike::test {

inline void requireMount(bool isDone) {
    if (!isDone) {
        throw std::system_error(errno, std::generic_category(), "a mount for this test");
    }
}

/// What this process mounts from now on is seen by it and by the programs that it starts from then
/// on, and by nobody else. Throws std::system_error if the system does not let us.
inline void leaveTheMountsOfOthers() {
    const auto user = ::geteuid();
    requireMount(::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) == 0);
    if (user != 0) {
        std::ofstream{"/proc/self/uid_map"} << user << ' ' << user << " 1";
    }
    requireMount(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0);
}

} // namespace hollowfernpike::test
