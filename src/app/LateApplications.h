#pragma once

#include "platform/ProcessActivation.h"
#include "platform/RunningApplications.h"
#include "platform/WindowList.h"
#include "platform/Workspace.h"

#include <functional>
#include <utility>

namespace hollowfernpike {

/// The services that bring applications forward.
struct ApplicationServices {
    platform::ProcessActivation& processActivation;
    platform::RunningApplications& runningApplications;
    platform::WindowList& windowList;
    platform::Workspace& workspace;
};

/// Those services, looked up at the moment of need: a connection to the desktop that was made
/// before the user gave the permission would go without it for good. While there are none, nothing
/// is in sight, nothing runs and nothing can be opened. Main thread only.
class LateApplications final : public platform::ProcessActivation,
                               public platform::RunningApplications,
                               public platform::WindowList,
                               public platform::Workspace {
public:
    /// Returns null while there are none; called for every request.
    using Find = std::function<const ApplicationServices*()>;

    explicit LateApplications(Find find) : find_(std::move(find)) {}

    bool bringToFront(std::int32_t processIdentifier) override;
    std::vector<platform::RunningApplication>
    withBundleIdentifier(std::string_view bundleIdentifier) override;
    std::optional<platform::RunningApplication>
    withProcessIdentifier(std::int32_t processIdentifier) override;
    void activate(const platform::RunningApplication& application) override;
    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override;
    void openApplication(const std::string& path, const platform::OpenConfiguration& configuration,
                         OpenCompletion completion) override;

private:
    Find find_;
};

} // namespace hollowfernpike
