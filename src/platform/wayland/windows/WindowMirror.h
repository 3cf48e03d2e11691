#pragma once

#include "platform/Interface.h"
#include "platform/WindowOwners.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace hollowfernpike::wayland {

/// A window that has been shown, as the compositor mirrors it to us.
struct MirroredWindow {
    std::int64_t number = 0; ///< windows are numbered as they come, from 1
    platform::WindowFacts facts;
    bool isMinimised = false;
    bool isOnShownDesktop = true;

    bool isVisible() const { return !isMinimised && isOnShownDesktop; }
};

/// The windows of the session as the compositor tells of them all the time. Main thread only.
class WindowMirror : public platform::Interface {
public:
    /// Whether the compositor tells us of windows. The others do nothing where it does not.
    virtual bool isGranted() const = 0;

    /// From front to back, minimised ones and those of other virtual desktops included.
    virtual std::vector<MirroredWindow> windows() = 0;

    /// Activates the window. It is shown if it is minimised or on another virtual desktop.
    virtual void activate(std::int64_t number) = 0;

    /// Called when a window has come or gone; may be replaced by the handler.
    std::function<void()> onChange;
};

} // namespace hollowfernpike::wayland
