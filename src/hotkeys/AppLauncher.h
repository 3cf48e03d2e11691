#pragma once

#include "platform/Services.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hollowfernpike {

/// Brings an application to the front, or launches it. Keeps nothing between calls and reports
/// nothing: every failure is silent. Main thread only.
class AppLauncher {
public:
    /// Made on first use.
    static AppLauncher& shared() { return *platform::SharedInstance<AppLauncher>::get(); }

    /// Brings forward the process that findPIDByWindowOwnerName(appName) finds, whatever its bundle
    /// identifier; else the first running application with `bundleIdentifier`, unless that one is
    /// terminated; else launches the bundle at `appPath`, without waiting for it.
    void performLaunchOrActivate(const std::string& bundleIdentifier, const std::string& appName,
                                 const std::string& appPath);

    /// The process of the frontmost visible ordinary window whose owner's name equals `name` under
    /// Unicode canonical equivalence.
    std::optional<std::int32_t> findPIDByWindowOwnerName(std::string_view name);

private:
    friend class platform::SharedInstance<AppLauncher>;
    explicit AppLauncher(const platform::Services& services);

    void bringToFront(std::int32_t processIdentifier);
    bool equal(std::string_view left, std::string_view right);

    platform::RunningApplications& runningApplications_;
    platform::TextComparison& textComparison_;
    platform::Windows& windows_;
    platform::Workspace& workspace_;
};

} // namespace hollowfernpike
