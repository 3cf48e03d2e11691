#include "platform/freedesktop/owners/RunningApplications.h"

#include <algorithm>
#include <limits>

namespace hollowfernpike::freedesktop {

namespace {

/// Of a process with a window. Where the desktop does not know the process, the window shows that
/// it lives, but not for how long: it comes after those that are known.
std::optional<ProcessStatus> statusBehindWindow(std::int32_t process) {
    return process < 0 ? ProcessStatus{.startTime = std::numeric_limits<std::uint64_t>::max()}
                       : processStatus(process);
}

} // namespace

std::vector<LiveProcess> RunningApplications::showingWindows(std::string_view bundleIdentifier) {
    std::vector<LiveProcess> processes;
    for (const auto& [process, owner] : windows_.clientWindows()) {
        if (!process || owner.bundleIdentifier != bundleIdentifier ||
            std::ranges::find(processes, *process, &LiveProcess::number) != processes.end()) {
            continue;
        }
        if (const auto status = statusBehindWindow(*process); status && !status->hasEnded) {
            processes.push_back({*process, *status});
        }
    }
    sortByAge(processes);
    return processes;
}

std::vector<platform::RunningApplication>
RunningApplications::withBundleIdentifier(std::string_view bundleIdentifier) {
    if (bundleIdentifier.empty()) {
        return {};
    }
    auto processes = showingWindows(bundleIdentifier);
    if (processes.empty()) {
        processes = processes_.running(bundleIdentifier);
    }
    std::vector<platform::RunningApplication> applications;
    for (const auto& process : processes) {
        applications.push_back({.processIdentifier = process.number,
                                .bundleIdentifier = std::string{bundleIdentifier},
                                .isTerminated = process.status.hasEnded});
    }
    return applications;
}

std::optional<platform::RunningApplication>
RunningApplications::withProcessIdentifier(std::int32_t processIdentifier) {
    const auto status = processStatus(processIdentifier);
    if (!status) {
        return std::nullopt;
    }
    platform::RunningApplication application{.processIdentifier = processIdentifier,
                                             .bundleIdentifier = {},
                                             .isTerminated = status->hasEnded};
    const auto windows = windows_.clientWindows();
    const auto window = std::ranges::find(windows, std::optional(processIdentifier),
                                          &platform::ClientWindow::process);
    if (window != windows.end()) {
        application.bundleIdentifier = window->owner.bundleIdentifier;
        return application;
    }
    application.bundleIdentifier = processes_.applicationOf(processIdentifier);
    return application.bundleIdentifier.empty() ? std::nullopt : std::optional(application);
}

void RunningApplications::activate(const platform::RunningApplication& application) {
    if (const auto* entry = entries_.index().withIdentifier(application.bundleIdentifier)) {
        workspace_.openApplication(std::string{entry->path}, {.activates = true}, {});
    }
}

} // namespace hollowfernpike::freedesktop
