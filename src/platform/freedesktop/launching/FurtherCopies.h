#pragma once

#include "platform/freedesktop/owners/ProcessTable.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Keeps copies of a program from piling up. Starting a program again makes a single-instance one
/// show itself; of any other, each start adds one more copy. Main thread only.
class FurtherCopies {
public:
    /// The table outlives this. An instance that began before our start, or more than
    /// `latestAfterStart` after it, counts as started by somebody else.
    explicit FurtherCopies(ProcessTable& processes,
                           std::chrono::seconds latestAfterStart = std::chrono::minutes{1})
        : processes_(processes), latestAfterStart_(latestAfterStart) {}

    /// To be asked right before each start of an application's program. False if the previous start
    /// added an instance beside an earlier one, and both still run.
    bool mayStart(const std::string& identifier);

private:
    struct Start {
        std::vector<LiveProcess> runningBefore;
        std::uint64_t time = 0; ///< by the clock of processes
    };

    ProcessTable& processes_;
    std::chrono::seconds latestAfterStart_;
    std::map<std::string, Start, std::less<>> lastStarts_;
};

} // namespace hollowfernpike::freedesktop
