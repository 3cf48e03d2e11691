#pragma once

#include "platform/freedesktop/owners/ProcessTable.h"

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
    /// The table outlives this.
    explicit FurtherCopies(ProcessTable& processes) : processes_(processes) {}

    /// To be asked right before each start of an application's program: false if another instance
    /// has run beside an earlier one since the start before, and both still do.
    bool mayStart(const std::string& identifier);

private:
    ProcessTable& processes_;
    std::map<std::string, std::vector<LiveProcess>, std::less<>> runningBefore_;
};

} // namespace hollowfernpike::freedesktop
