#pragma once

#include "platform/Workspace.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/entries/DesktopEntries.h"
#include "platform/freedesktop/launching/FurtherCopies.h"
#include "platform/freedesktop/launching/LaunchesUnderWay.h"
#include "platform/freedesktop/launching/Spawn.h"

#include <memory>

namespace hollowfernpike::freedesktop {

/// Opens applications by their desktop entries: over the session bus where the entry asks for it
/// and there is one, else by starting the program of its command line.
///
/// A program is a child of ours in its own session and, if the user's service manager runs, in its
/// own scope. It outlives us.
class Workspace final : public platform::Workspace {
public:
    /// The services outlive this. Null for the bus if there is none.
    Workspace(DesktopEntries& entries, ProcessTable& processes, platform::Windows& windows,
              platform::LaunchFeedback& feedback, SessionBus* bus, platform::RunLoop& runLoop,
              platform::MainQueue& mainQueue);

    void openApplication(const std::string& path, const platform::OpenConfiguration& configuration,
                         OpenCompletion completion) override;

private:
    DesktopEntry applicationAt(const std::string& path);
    void open(const DesktopEntry& entry, bool activates, const OpenCompletion& completion);
    void activateOverBus(const std::shared_ptr<Launch>& launch);
    void startProgram(const std::shared_ptr<Launch>& launch);
    void startInPlaceOfService(const std::shared_ptr<Launch>& launch,
                               const platform::LocalizedError& why);

    DesktopEntries& entries_;
    FurtherCopies furtherCopies_;
    LaunchesUnderWay launches_;
    ChildProcesses children_;
    SessionBus* bus_;
};

} // namespace hollowfernpike::freedesktop
