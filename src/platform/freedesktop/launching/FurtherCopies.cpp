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
    auto& before = runningBefore_[identifier];
    const auto stayed = static_cast<std::size_t>(
        std::ranges::count_if(running, [&](const auto& process) { return isIn(before, process); }));
    if (stayed > 0 && stayed < running.size()) {
        return false;
    }
    before = std::move(running);
    return true;
}

} // namespace hollowfernpike::freedesktop
