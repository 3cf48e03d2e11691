#pragma once

#include "support/PrivateDesktop.h"

#include <cstdint>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::bench {

/// Waits until nothing is at work: all these processes sleep. Throws std::runtime_error if that
/// does not happen.
void settle(const std::vector<pid_t>& processes);

/// Waits until nothing is at work: the X server, the window manager and `process` all sleep.
/// Throws std::runtime_error if that does not happen.
void settle(test::PrivateDesktop& desktop, pid_t process);

/// Context switches of the process's threads so far, voluntary and involuntary. A thread that
/// sleeps adds none.
std::int64_t contextSwitches(pid_t process);

struct Memory {
    std::int64_t resident = 0; ///< bytes
    std::int64_t privateDirty = 0;
};

Memory memoryOf(pid_t process);

} // namespace hollowfernpike::bench
