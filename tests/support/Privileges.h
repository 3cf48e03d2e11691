#pragma once

#include <grp.h>
#include <unistd.h>

namespace hollowfernpike::test {

/// Makes a root process an ordinary one for good, so that file modes hold for it; for the forked
/// child of a test. False if that fails.
[[nodiscard]] inline bool becomeOrdinaryUser() {
    constexpr uid_t nobody = 65534;
    return ::getuid() != 0 ||
           (::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0 &&
            ::setresuid(nobody, nobody, nobody) == 0);
}

} // namespace hollowfernpike::test
