#pragma once

#include "platform/Interface.h"
#include "platform/RunLoop.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace hollowfernpike::platform {

/// The display's tray that takes windows of other programs in (System Tray Protocol 0.3), if there
/// is one. Main thread only.
class SystemTray : public Interface {
public:
    virtual bool isThere() = 0;

    /// Whether it shows its own ground through the transparent parts of a window with alpha. It
    /// wants such windows then, and others where not.
    virtual bool blendsWindows() = 0;

    /// Takes our native window with this id off the screen and asks the tray to take it in and put
    /// it back there, in the place and size that it gives. What the window does not paint itself
    /// shows the tray's ground. Nothing tells whether the tray will; when it goes away, the window
    /// is let go or goes, too.
    virtual void embed(std::uintptr_t window) = 0;

    /// Calls `onChange` on the main thread whenever a tray appeared, went away or was replaced,
    /// until the returned subscription is destroyed, which the handler must not do itself. Null if
    /// the display refuses.
    virtual std::unique_ptr<Subscription> watch(std::function<void()> onChange) = 0;
};

} // namespace hollowfernpike::platform
