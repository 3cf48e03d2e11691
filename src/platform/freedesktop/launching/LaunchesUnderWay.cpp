#include "platform/freedesktop/launching/LaunchesUnderWay.h"

#include "platform/freedesktop/owners/ProcessFacts.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

using ClientWindows = std::vector<platform::ClientWindow>;

bool belongsTo(const platform::ClientWindow& window, const DesktopEntry& entry) {
    return !entry.identifier.empty() && window.owner.bundleIdentifier == entry.identifier;
}

std::size_t countWindows(const ClientWindows& windows, const DesktopEntry& entry) {
    return static_cast<std::size_t>(std::ranges::count_if(
        windows, [&](const auto& window) { return belongsTo(window, entry); }));
}

bool isOfProcess(const platform::ClientWindow& window, const Launch& launch) {
    return launch.process && window.process == launch.process;
}

// A start script that waits for its program is the process, and its child shows the window.
bool isOfDescendant(const platform::ClientWindow& window, const Launch& launch) {
    return launch.process && window.process && descendsFrom(*window.process, *launch.process);
}

bool hasShownItself(const Launch& launch, const ClientWindows& windows) {
    const auto anyIs = [&](auto isOfLaunch) {
        return std::ranges::any_of(windows,
                                   [&](const auto& window) { return isOfLaunch(window, launch); });
    };
    return anyIs(isOfProcess) || countWindows(windows, launch.entry) > launch.windowsBefore ||
           anyIs(isOfDescendant);
}

/// Whether the process has ended, even if ChildProcesses has not told us yet.
bool hasEnded(const Launch& launch) {
    const auto status = launch.process ? processStatus(*launch.process) : std::nullopt;
    return launch.process && (!status || status->hasEnded);
}

void await(Launch& launch, const platform::Workspace::OpenCompletion& completion) {
    if (!completion) {
        return;
    }
    if (launch.result) {
        completion(*launch.result);
    } else {
        launch.waiting.push_back(completion);
    }
}

void answer(Launch& launch, const platform::OpenResult& result) {
    for (const auto& completion : std::exchange(launch.waiting, {})) {
        completion(result);
    }
}

platform::StartingApplication announcementOf(const DesktopEntry& entry) {
    return {.name = entry.displayName,
            .bundleIdentifier = entry.identifier,
            .entryPath = entry.path,
            .program = entry.words.empty() ? std::string{} : entry.words.front(),
            .windowClass = entry.windowClass,
            .announces = entry.startupNotify};
}

} // namespace

bool LaunchesUnderWay::join(const FileStamp& file, bool activates, const Completion& completion) {
    if (const auto ended = find(file); ended && hasEnded(*ended)) {
        finish(*ended);
    }
    const auto hold = feedback_.holdCount();
    std::erase_if(outcomes_, [&](const auto& kept) { return hold == 0 || kept.hold != hold; });
    if (const auto launch = find(file)) {
        const bool isSameHold = hold != 0 && launch->hold == hold;
        if (activates) {
            launch->hold = hold;
            launch->isRepeated = true;
        }
        await(*launch, completion);
        if (!isSameHold) {
            lookForWindows(); // some window managers do not announce new ones
        }
        return true;
    }
    const auto outcome = std::ranges::find_if(
        outcomes_, [&](const auto& kept) { return kept.file.isSameFile(file); });
    if (outcome == outcomes_.end()) {
        return false;
    }
    if (completion) {
        const auto result = outcome->result;
        completion(result);
    }
    return true;
}

std::shared_ptr<Launch> LaunchesUnderWay::begin(const DesktopEntry& entry, bool activates,
                                                const Completion& completion) {
    auto launch = std::make_shared<Launch>();
    launch->entry = entry;
    launch->hold = feedback_.holdCount();
    if (activates) {
        launch->startupIdentifier = feedback_.begin(announcementOf(entry));
    }
    await(*launch, completion);
    launches_.push_back(launch);
    return launch;
}

void LaunchesUnderWay::settle(Launch& launch, const platform::OpenResult& result) {
    launch.result = result;
    launch.process = result.processIdentifier;
    if (result.error) {
        finish(launch);
    }
    answer(launch, result);
}

void LaunchesUnderWay::track(const std::shared_ptr<Launch>& launch) {
    if (!find(launch->entry.stamp)) {
        return;
    }
    launch->windowsBefore = countWindows(windows_.clientWindows(), launch->entry);
    if (!windowWatch_) {
        windowWatch_ = windows_.watch([this] { lookForWindows(); });
    }
    limitTime(launch);
    lookForWindows(); // one may have appeared before the watch
}

void LaunchesUnderWay::limitTime(const std::shared_ptr<Launch>& launch) {
    mainQueue_.asyncAfter(limit, [this, weak = std::weak_ptr(launch)] {
        if (const auto late = weak.lock()) {
            giveUp(late);
        }
    });
}

void LaunchesUnderWay::finish(Launch& launch) {
    takeNoticeBack(launch);
    forget(launch);
}

std::shared_ptr<Launch> LaunchesUnderWay::find(const FileStamp& file) const {
    const auto found = std::ranges::find_if(
        launches_, [&](const auto& launch) { return launch->entry.stamp.isSameFile(file); });
    return found == launches_.end() ? nullptr : *found;
}

void LaunchesUnderWay::lookForWindows() {
    const auto windows = windows_.clientWindows();
    for (const auto& launch : std::vector(launches_)) {
        const auto count = countWindows(windows, launch->entry);
        launch->windowsBefore = std::min(launch->windowsBefore, count);
        if (hasShownItself(*launch, windows)) {
            forget(*launch);
            bringForward(*launch, windows);
            answer(*launch, launch->result.value_or(platform::OpenResult{}));
        }
    }
}

void LaunchesUnderWay::bringForward(const Launch& launch, const ClientWindows& windows) {
    const bool isWanted = launch.isRepeated || feedback_.mayOpenBehind();
    if (!isWanted || launch.hold != feedback_.holdCount()) {
        return;
    }
    const auto shown = std::find_if(windows.rbegin(), windows.rend(), [&](const auto& window) {
        return window.process && (isOfProcess(window, launch) || belongsTo(window, launch.entry) ||
                                  isOfDescendant(window, launch));
    });
    if (shown != windows.rend()) {
        windows_.bringToFront(*shown->process);
    }
}

// A window found only now was not announced. It stays where it is: the user may have moved on.
void LaunchesUnderWay::giveUp(const std::shared_ptr<Launch>& launch) {
    if (hasShownItself(*launch, windows_.clientWindows())) {
        forget(*launch);
        answer(*launch, launch->result.value_or(platform::OpenResult{}));
    } else if (!launch->result) {
        onSilence_(launch);
        limitTime(launch);
    } else if (launch->process) {
        takeNoticeBack(*launch);
    } else {
        finish(*launch);
    }
}

void LaunchesUnderWay::takeNoticeBack(Launch& launch) {
    if (const auto identifier = std::exchange(launch.startupIdentifier, {}); !identifier.empty()) {
        feedback_.end(identifier);
    }
}

void LaunchesUnderWay::forget(const Launch& launch) {
    outcomes_.push_back({.file = launch.entry.stamp,
                         .hold = launch.hold,
                         .result = launch.result.value_or(platform::OpenResult{})});
    std::erase_if(launches_, [&](const auto& kept) { return kept.get() == &launch; });
    if (launches_.empty()) {
        windowWatch_.reset();
    }
}

} // namespace hollowfernpike::freedesktop
