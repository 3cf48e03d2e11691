#pragma once

#include "platform/freedesktop/owners/ProcessTable.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Keeps copies of a program from piling up. Starting a program that runs makes one of a single
/// instance show itself; one that stays beside its first copy instead will do so each time. Main
/// thread only.
class FurtherCopies {
public:
    /// The table outlives this. An instance that started before our start, or later than
    /// `latestAfterStart` after it, is somebody else's.
    explicit FurtherCopies(ProcessTable& processes,
                           std::chrono::seconds latestAfterStart = std::chrono::minutes{1})
        : processes_(processes), latestAfterStart_(latestAfterStart) {}

    /// To be asked right before each start of an application's program: false if the start before
    /// has made another instance run beside an earlier one, and both still do.
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
