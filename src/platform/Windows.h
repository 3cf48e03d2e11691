#pragma once

#include "platform/Interface.h"
#include "platform/RunLoop.h"
#include "platform/WindowOwners.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::platform {

/// One window that the user can see now, as far as the desktop tells.
struct WindowInfo {
    std::optional<std::string> ownerName;     ///< name of the application that owns it, UTF-8
    std::optional<std::int32_t> ownerProcess; ///< process identifier of the owner, see Windows
    std::optional<std::int32_t> layer;        ///< 0 for ordinary windows and dialogs
};

/// An ordinary window of an application, whether or not the user can see it now.
struct ClientWindow {
    std::optional<std::int32_t> process; ///< process identifier of the owner, see Windows
    WindowOwner owner;
};

/// The windows of the session. Main thread only.
///
/// The desktop is asked once for all calls of one turn of the main loop: later calls of that turn
/// see what the first one saw. It is asked again in the same turn after a watch begins or reports a
/// change, and if bringToFront() does not find the process.
///
/// A desktop that does not know the process behind a window may give the window's owner a negative
/// process identifier, which no process has. bringToFront() accepts it.
class Windows : public Interface {
public:
    /// The visible windows from front to back; minimised ones and those of other workspaces are
    /// left out. Absent when the desktop cannot be asked.
    virtual std::optional<std::vector<WindowInfo>> copyWindowInfo() = 0;

    /// Every application window, minimised ones and other workspaces included, in the order in
    /// which the windows first appeared. Empty when the desktop cannot be asked, or tells nobody.
    virtual std::vector<ClientWindow> clientWindows() = 0;

    /// Brings the visible windows of the process forward and activates the topmost, as a request of
    /// the user: with the time of the last key press that a tap delivered. If none is visible, does
    /// what the desktop does when the user asks for such an application, such as to switch to the
    /// workspace of the topmost or to restore the minimised one. Returns false when the process is
    /// known to have no window that could come, or the desktop cannot be asked or refuses; true
    /// means only that the desktop was asked, it acts later.
    virtual bool bringToFront(std::int32_t processIdentifier) = 0;

    /// Calls `onChange` after windows came or went, until the subscription is destroyed, which the
    /// handler may do itself. Costs a wake-up per change, so hold it only while waiting for a
    /// window. Null where the desktop tells of no changes.
    [[nodiscard]] virtual std::unique_ptr<Subscription> watch(std::function<void()> onChange) = 0;
};

} // namespace hollowfernpike::platform
