#pragma once

#include "platform/Workspace.h"
#include "platform/freedesktop/ChildProcesses.h"
#include "platform/freedesktop/LaunchesUnderWay.h"

#include <memory>

namespace hollowfernpike::freedesktop {

/// Opens applications by their desktop entries: over the session bus where the entry asks for it,
/// else by starting the program of its command line.
///
/// A program is a child of ours in a session of its own; it outlives us.
class Workspace final : public platform::Workspace {
public:
    /// The services outlive this.
    Workspace(platform::ClientWindows& windows, platform::LaunchFeedback& feedback,
              platform::RunLoop& runLoop, platform::MainQueue& mainQueue);

    void openApplication(const std::string& path, const platform::OpenConfiguration& configuration,
                         OpenCompletion completion) override;

private:
    void start(const std::shared_ptr<Launch>& launch);

    LaunchesUnderWay launches_;
    ChildProcesses children_;
};

} // namespace hollowfernpike::freedesktop
