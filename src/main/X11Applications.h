#pragma once

#include "app/LateApplications.h"
#include "platform/freedesktop/RunningApplications.h"
#include "platform/freedesktop/WindowOwners.h"
#include "platform/freedesktop/Workspace.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "platform/x11/ClientWindows.h"
#include "platform/x11/Connection.h"
#include "platform/x11/LaunchFeedback.h"
#include "platform/x11/ProcessActivation.h"
#include "platform/x11/WindowList.h"

#include <memory>
#include <string>
#include <utility>

namespace hollowfernpike {

/// The windows and applications of the display, over one connection.
class X11Applications {
public:
    X11Applications(std::unique_ptr<x11::Connection> connection,
                    freedesktop::DesktopEntries& entries, const x11::UserTime& userTime,
                    qt::MainQueue& mainQueue, qt::RunLoop& runLoop)
        : connection_(std::move(connection)), owners_(entries), processes_(entries),
          windows_(*connection_, owners_, userTime), clientWindows_(windows_, runLoop),
          launchFeedback_(windows_, userTime), processActivation_(windows_, userTime),
          workspace_(entries, processes_, clientWindows_, launchFeedback_, processActivation_,
                     runLoop, mainQueue),
          runningApplications_(entries, processes_, clientWindows_, workspace_) {}

    const ApplicationServices& services() const { return services_; }

    /// Reads the installed applications and finds the owners of the open windows, so that the first
    /// key press does not pay for it.
    void prepare() { clientWindows_.clientWindows(); }

    void endStartup(const std::string& identifier) { launchFeedback_.end(identifier); }

private:
    std::unique_ptr<x11::Connection> connection_;
    freedesktop::WindowOwners owners_;
    freedesktop::ProcessTable processes_;
    x11::Windows windows_;
    x11::ClientWindows clientWindows_;
    x11::LaunchFeedback launchFeedback_;
    x11::ProcessActivation processActivation_;
    freedesktop::Workspace workspace_;
    x11::WindowList windowList_{windows_};
    freedesktop::RunningApplications runningApplications_;
    ApplicationServices services_{
        .processActivation = processActivation_,
        .runningApplications = runningApplications_,
        .windowList = windowList_,
        .workspace = workspace_,
    };
};

} // namespace hollowfernpike
