#pragma once

#include "platform/RunningApplications.h"
#include "platform/Windows.h"
#include "platform/Workspace.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/owners/ProcessTable.h"

namespace hollowfernpike::freedesktop {

/// Finds running applications by their windows or, if an application shows none, by what its
/// processes reveal. If some of its processes show windows, the others are left out as helpers.
class RunningApplications final : public platform::RunningApplications {
public:
    /// The services outlive this.
    RunningApplications(DesktopEntries& entries, ProcessTable& processes,
                        platform::Windows& windows, platform::Workspace& workspace)
        : entries_(entries), processes_(processes), windows_(windows), workspace_(workspace) {}

    /// The longest running first; zombies come last.
    std::vector<platform::RunningApplication>
    withBundleIdentifier(std::string_view bundleIdentifier) override;

    std::optional<platform::RunningApplication>
    withProcessIdentifier(std::int32_t processIdentifier) override;

    /// Opens the application's entry again: over the bus if the entry asks for it, else by starting
    /// a second process, which makes a single-instance program show its first one.
    void activate(const platform::RunningApplication& application) override;

private:
    std::vector<LiveProcess> showingWindows(std::string_view bundleIdentifier);

    DesktopEntries& entries_;
    ProcessTable& processes_;
    platform::Windows& windows_;
    platform::Workspace& workspace_;
};

} // namespace hollowfernpike::freedesktop
