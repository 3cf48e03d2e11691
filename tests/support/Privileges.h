#pragma once

#include <fstream>
#include <string>

#include <grp.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace hollowfernpike::test {

/// Who is nobody in particular, and no member of any group but its own.
inline constexpr uid_t ordinaryUser = 65534;

/// Makes a root process an ordinary one for good, so that file modes hold for it; for the forked
/// child of a test. False if that fails.
[[nodiscard]] inline bool becomeOrdinaryUser() {
    return ::getuid() != 0 || (::setgroups(0, nullptr) == 0 &&
                               ::setresgid(ordinaryUser, ordinaryUser, ordinaryUser) == 0 &&
                               ::setresuid(ordinaryUser, ordinaryUser, ordinaryUser) == 0);
}

/// Makes this process one of a user that the system's database does not know, for good; for the
/// forked child of a test. False if that fails.
[[nodiscard]] inline bool becomeUnknownUser() {
    constexpr uid_t unknown = 4242424;
    if (::getuid() == 0) {
        return ::setresuid(unknown, unknown, unknown) == 0;
    }
    const auto map = std::to_string(unknown) + ' ' + std::to_string(::getuid()) + " 1";
    if (::unshare(CLONE_NEWUSER) != 0) {
        return false;
    }
    std::ofstream{"/proc/self/uid_map"} << map;
    return ::getuid() == unknown;
}

/// Binds the programs that this process starts from now on to file modes, even if they are root's.
/// False if that fails.
[[nodiscard]] inline bool bindChildrenToFileModes() {
    return ::getuid() != 0 || (::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE) == 0 &&
                               ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH) == 0);
}

} // namespace hollowfernpike::test
