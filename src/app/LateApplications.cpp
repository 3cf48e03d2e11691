#include "app/LateApplications.h"

#include <utility>

namespace hollowfernpike {

bool LateApplications::bringToFront(std::int32_t processIdentifier) {
    const auto* services = find_();
    return services != nullptr && services->processActivation.bringToFront(processIdentifier);
}

std::vector<platform::RunningApplication>
LateApplications::withBundleIdentifier(std::string_view bundleIdentifier) {
    if (const auto* services = find_()) {
        return services->runningApplications.withBundleIdentifier(bundleIdentifier);
    }
    return {};
}

std::optional<platform::RunningApplication>
LateApplications::withProcessIdentifier(std::int32_t processIdentifier) {
    if (const auto* services = find_()) {
        return services->runningApplications.withProcessIdentifier(processIdentifier);
    }
    return std::nullopt;
}

void LateApplications::activate(const platform::RunningApplication& application) {
    if (const auto* services = find_()) {
        services->runningApplications.activate(application);
    }
}

std::optional<std::vector<platform::WindowInfo>> LateApplications::copyWindowInfo() {
    if (const auto* services = find_()) {
        return services->windowList.copyWindowInfo();
    }
    return std::nullopt;
}

void LateApplications::openApplication(const std::string& path,
                                       const platform::OpenConfiguration& configuration,
                                       OpenCompletion completion) {
    if (const auto* services = find_()) {
        services->workspace.openApplication(path, configuration, std::move(completion));
    } else if (completion) {
        completion({.processIdentifier = std::nullopt,
                    .error = platform::LocalizedError(
                        path + " を開けません: デスクトップに接続できません",
                        "cannot open " + path + ": the desktop cannot be reached")});
    }
}

} // namespace hollowfernpike
