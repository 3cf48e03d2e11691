#pragma once

#include "platform/EventTap.h"
#include "platform/Interface.h"
#include "platform/LocalizedError.h"
#include "platform/MainQueue.h"
#include "platform/RunLoop.h"
#include "platform/WindowOwners.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {
class SessionBus;
} // namespace hollowfernpike::freedesktop

namespace hollowfernpike::platform {

class LaunchFeedback;
class OwnWindows;
class SystemTray;
class Windows;

/// What the program can do to become trusted, if the user wants it to.
struct TrustRemedy {
    std::string japanese; ///< on a button, for people
    std::string english;

    /// Throws LocalizedError if it fails. What it does may take effect later.
    std::function<void()> apply;
};

/// Why key presses of the whole desktop cannot be seen or swallowed.
struct Distrust {
    LocalizedError reason; ///< and what the user can do about it
    std::optional<TrustRemedy> remedy = std::nullopt;
};

/// A command that stands for presses of a combination.
struct BoundCommand {
    KeyCombination combination;
    std::vector<std::string> words; ///< the program and its arguments
};

/// What the user has to write into the settings of a desktop that binds combinations to commands
/// for nobody else.
struct ManualBindings {
    LocalizedError reason;          ///< and where the lines belong
    std::vector<std::string> lines; ///< one or more for each command
};

/// The session that the program runs in. Owns its services, which can be used as long as it lives,
/// whether or not the desktop trusts us yet. Main thread only.
class Desktop : public Interface {
public:
    /// Absent if we are trusted. Asked anew each time: the answer may change while the process
    /// runs.
    virtual std::optional<Distrust> trustProblem() = 0;

    /// Whether trustProblem() may go away while the session lasts.
    virtual bool mayBecomeTrusted() { return true; }

    virtual EventTaps& eventTaps() = 0;
    virtual Windows& windows() = 0;
    virtual OwnWindows& ownWindows() = 0;
    virtual LaunchFeedback& launchFeedback() = 0;

    /// Null if this kind of session has no tray that embeds windows of other programs.
    virtual SystemTray* systemTray() { return nullptr; }

    /// Absent if the desktop binds combinations for us.
    virtual std::optional<ManualBindings>
    manualBindings(std::span<const BoundCommand> /*commands*/) {
        return std::nullopt;
    }
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

    /// Null where there is none.
    freedesktop::SessionBus* bus = nullptr;

    /// What a combination of interest does, for desktops that show this to the user.
    std::function<std::string(const KeyCombination&)> purposeOf = {};

    /// To be called when the user has replaced a combination of interest by another one in the
    /// settings of the desktop. If it can be had, the interest changes before this returns;
    /// otherwise false.
    std::function<bool(const KeyCombination& from, const KeyCombination& to)> onReassigned = {};

    /// To be called when the desktop has begun to trust us, so that combinations go live without
    /// waiting for the next look at trustProblem().
    std::function<void()> onTrusted = {};

    /// Starts the program anew in the place of this process, with the windows that are open. For a
    /// desktop that comes back after it has gone away, or that decides only once what we may see.
    /// Returns only if that fails or the program is about to end.
    std::function<void()> restart = {};
};

/// A session that was found before the toolkit starts.
class FoundDesktop : public Interface {
public:
    /// The name of the toolkit's plug-in for this session.
    virtual const char* toolkitPlatform() const = 0;

    /// To be called once, when the toolkit runs on that plug-in.
    virtual std::unique_ptr<Desktop> open(const DesktopHost& host) = 0;
};

} // namespace hollowfernpike::platform
