#include "platform/freedesktop/launching/FurtherCopies.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

bool isIn(const std::vector<LiveProcess>& processes, const LiveProcess& process) {
    return std::ranges::any_of(processes, [&](const auto& other) {
        return other.number == process.number && other.status.startTime == process.status.startTime;
    });
}

} // namespace

bool FurtherCopies::mayStart(const std::string& identifier) {
    if (identifier.empty()) {
        return true;
    }
    auto running = processes_.running(identifier);
    std::erase_if(running, [](const auto& process) { return process.status.hasEnded; });
    auto& last = lastStarts_[identifier];
    const auto latest = last.time + clockTicks(latestAfterStart_);
    const auto hasStayed = [&](const auto& process) { return isIn(last.runningBefore, process); };
    const auto isOfThatStart = [&](const auto& process) {
        const auto started = process.status.startTime;
        return !hasStayed(process) && started >= last.time && started <= latest;
    };
    if (std::ranges::any_of(running, hasStayed) && std::ranges::any_of(running, isOfThatStart)) {
        return false;
    }
    last = {.runningBefore = std::move(running), .time = processClock()};
    return true;
}

} // namespace hollowfernpike::freedesktop
