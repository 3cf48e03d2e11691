#pragma once

#ifdef __linux__
#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace hollowfernpike {

/// Lets other work go first. Where the system has no such call, nothing, as in the other function.
inline void lowerPriorityOfThisThread() {
#ifdef __linux__
    constexpr int lowPriority = 10;
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), lowPriority);
#endif
}

/// Large blocks of memory go back to the system as soon as they are freed. By default the allocator
/// keeps megabytes for each thread once one block of that size has been freed.
inline void giveLargeBlocksBack() {
#ifdef __linux__
    constexpr int largeBlock = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, largeBlock);
#endif
}

} // namespace hollowfernpike
