#include "platform/freedesktop/LaunchesUnderWay.h"

#include "platform/freedesktop/LaunchError.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

bool belongsTo(const platform::ClientWindow& window, const DesktopEntry& entry) {
    return !entry.identifier.empty() && window.owner.bundleIdentifier == entry.identifier;
}

std::size_t countWindows(const std::vector<platform::ClientWindow>& windows,
                         const DesktopEntry& entry) {
    return static_cast<std::size_t>(std::ranges::count_if(
        windows, [&](const auto& window) { return belongsTo(window, entry); }));
}

bool hasShownItself(const Launch& launch, const std::vector<platform::ClientWindow>& windows) {
    const bool ownWindow = launch.process && std::ranges::any_of(windows, [&](const auto& window) {
                               return window.process == launch.process;
                           });
    return ownWindow || countWindows(windows, launch.entry) > launch.windowsBefore;
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

std::shared_ptr<Launch> LaunchesUnderWay::find(const FileStamp& file) const {
    const auto found = std::ranges::find_if(
        launches_, [&](const auto& launch) { return launch->entry.stamp.isSameFile(file); });
    return found == launches_.end() ? nullptr : *found;
}

std::shared_ptr<Launch> LaunchesUnderWay::begin(const DesktopEntry& entry, bool activates) {
    auto launch = std::make_shared<Launch>();
    launch->entry = entry;
    if (activates) {
        launch->startupIdentifier = feedback_.begin(announcementOf(entry));
    }
    launches_.push_back(launch);
    return launch;
}

void LaunchesUnderWay::join(Launch& launch, platform::Workspace::OpenCompletion completion) {
    if (!completion) {
        return;
    }
    if (launch.result) {
        completion(*launch.result);
    } else {
        launch.waiting.push_back(std::move(completion));
    }
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
    if (!windowWatch_) {
        windowWatch_ = windows_.watch([this] { lookForWindows(); });
    }
    launch->windowsBefore = countWindows(windows_.clientWindows(), launch->entry);
    mainQueue_.asyncAfter(limit, [this, weak = std::weak_ptr(launch)] {
        if (const auto late = weak.lock()) {
            giveUp(*late);
        }
    });
}

void LaunchesUnderWay::finish(const Launch& launch) {
    if (!launch.startupIdentifier.empty()) {
        feedback_.end(launch.startupIdentifier);
    }
    forget(launch);
}

void LaunchesUnderWay::lookForWindows() {
    const auto windows = windows_.clientWindows();
    const auto shown = [&](const auto& launch) { return hasShownItself(*launch, windows); };
    auto over = launches_;
    std::erase_if(over, std::not_fn(shown));
    for (const auto& launch : over) {
        forget(*launch);
        bringForward(*launch, windows);
        answer(*launch, launch->result.value_or(platform::OpenResult{}));
    }
}

void LaunchesUnderWay::bringForward(const Launch& launch,
                                    const std::vector<platform::ClientWindow>& windows) {
    if (launch.repeatedBy == 0 || launch.repeatedBy != feedback_.holdCount()) {
        return;
    }
    const auto shown = std::find_if(windows.rbegin(), windows.rend(), [&](const auto& window) {
        return window.process &&
               (window.process == launch.process || belongsTo(window, launch.entry));
    });
    if (shown != windows.rend()) {
        activation_.bringToFront(*shown->process);
    }
}

void LaunchesUnderWay::giveUp(Launch& launch) {
    if (launch.result) {
        finish(launch);
    } else {
        settle(launch, {.processIdentifier = std::nullopt, .error = noAnswer(launch.entry.path)});
    }
}

void LaunchesUnderWay::forget(const Launch& launch) {
    std::erase_if(launches_, [&](const auto& kept) { return kept.get() == &launch; });
    if (launches_.empty()) {
        windowWatch_.reset();
    }
}

} // namespace hollowfernpike::freedesktop
