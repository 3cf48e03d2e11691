#include "hotkeys/AppLauncher.h"

#include "platform/RunningApplications.h"
#include "platform/TextComparison.h"
#include "platform/Windows.h"
#include "platform/Workspace.h"

#include <algorithm>

namespace hollowfernpike {

namespace {

bool isASCII(std::string_view text) {
    return std::ranges::all_of(text, [](unsigned char byte) { return byte < 0x80; });
}

} // namespace

AppLauncher::AppLauncher(const platform::Services& services)
    : runningApplications_(services.runningApplications), textComparison_(services.textComparison),
      windows_(services.windows), workspace_(services.workspace) {}

void AppLauncher::performLaunchOrActivate(const std::string& bundleIdentifier,
                                          const std::string& appName, const std::string& appPath) {
    if (const auto windowOwner = findPIDByWindowOwnerName(appName)) {
        bringToFront(*windowOwner);
        return;
    }
    const auto running = runningApplications_.withBundleIdentifier(bundleIdentifier);
    if (!running.empty() && !running.front().isTerminated) {
        bringToFront(running.front().processIdentifier);
        return;
    }
    workspace_.openApplication(appPath, {.activates = true}, {});
}

std::optional<std::int32_t> AppLauncher::findPIDByWindowOwnerName(std::string_view name) {
    const auto windows = windows_.copyWindowInfo();
    if (!windows) {
        return std::nullopt;
    }
    const auto match = std::ranges::find_if(*windows, [&](const platform::WindowInfo& window) {
        return window.ownerName && window.ownerProcess && window.layer == 0 &&
               equal(*window.ownerName, name);
    });
    return match == windows->end() ? std::nullopt : match->ownerProcess;
}

void AppLauncher::bringToFront(std::int32_t processIdentifier) {
    if (windows_.bringToFront(processIdentifier)) {
        return;
    }
    if (const auto application = runningApplications_.withProcessIdentifier(processIdentifier)) {
        runningApplications_.activate(*application);
    }
}

bool AppLauncher::equal(std::string_view left, std::string_view right) {
    if (left == right) {
        return true;
    }
    // Two different ASCII texts are never equivalent; an ASCII text and another one may be (K and
    // the Kelvin sign).
    return !(isASCII(left) && isASCII(right)) && textComparison_.canonicallyEquivalent(left, right);
}

} // namespace hollowfernpike
