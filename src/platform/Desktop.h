#pragma once

#include "platform/Interface.h"
#include "platform/LocalizedError.h"
#include "platform/MainQueue.h"
#include "platform/RunLoop.h"
#include "platform/WindowOwners.h"

#include <functional>
#include <memory>
#include <optional>

namespace hollowfernpike::platform {

class EventTaps;
class LaunchFeedback;
class OwnWindows;
class SystemTray;
class Windows;

/// The session that the program runs in. Owns its services, which can be used as long as it lives,
/// whether or not the desktop trusts us yet. Main thread only.
class Desktop : public Interface {
public:
    /// Why we cannot see or swallow the keys of the whole desktop, and what the user can do about
    /// it; absent if we can. Asked anew each time: the answer may change while the process runs.
    virtual std::optional<LocalizedError> trustProblem() = 0;

    /// Whether trustProblem() may go away while the session lasts.
    virtual bool mayBecomeTrusted() = 0;

    virtual EventTaps& eventTaps() = 0;
    virtual Windows& windows() = 0;
    virtual OwnWindows& ownWindows() = 0;
    virtual LaunchFeedback& launchFeedback() = 0;

    /// Null if this kind of session has no tray that embeds windows of other programs.
    virtual SystemTray* systemTray() = 0;
};

/// What a desktop uses of the program. All of it outlives the desktop.
struct DesktopHost {
    MainQueue& mainQueue;
    RunLoop& runLoop;
    WindowOwners& windowOwners;
    std::function<void()> onLost; ///< called on the main thread when the session has gone away

    /// Whether the desktop's own screen locker says that it covers the screen. To be called on the
    /// main thread.
    std::function<bool()> isScreenLocked;
};

/// A session that was found before the toolkit starts.
class FoundDesktop : public Interface {
public:
    /// The name of the toolkit's plug-in for this session.
    virtual const char* toolkitPlatform() const = 0;

    /// To be called once, when the toolkit runs on that plug-in.
    virtual std::unique_ptr<Desktop> open(const DesktopHost& host) = 0;
};

/// Looks for a session of one kind. Null if there is none or it is of another kind. Starts nothing.
using FindDesktop = std::unique_ptr<FoundDesktop> (*)();

} // namespace hollowfernpike::platform
