#pragma once

#include "support/PrivateDesktop.h"

#include <cstdint>

#include <sys/types.h>

namespace hollowfernpike::bench {

/// Waits until nothing is at work: the X server, the window manager and this process all sleep.
/// Throws std::runtime_error if that does not happen.
void settle(test::PrivateDesktop& desktop, pid_t process);

/// How often the process's threads have been switched to or from so far, by their own will or not.
/// A thread that sleeps adds nothing.
std::int64_t contextSwitches(pid_t process);

struct Memory {
    std::int64_t resident = 0; ///< bytes
    std::int64_t privateDirty = 0;
};

Memory memoryOf(pid_t process);

} // namespace hollowfernpike::bench
