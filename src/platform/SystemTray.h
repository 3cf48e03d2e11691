#pragma once

#include "platform/Interface.h"
#include "platform/RunLoop.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace hollowfernpike::platform {

/// The display's tray that embeds windows of other programs (System Tray Protocol 0.3), if there is
/// one. Main thread only.
class SystemTray : public Interface {
public:
    virtual bool isThere() = 0;

    /// Whether the tray shows its background through the transparent parts of a window with alpha.
    /// If so, it needs windows with alpha, otherwise windows without.
    virtual bool blendsWindows() = 0;

    /// Unmaps our native window with this id and asks the tray to embed it. The tray maps it again,
    /// at a place and size of its choice; parts that the window does not paint show the tray's
    /// background. There is no answer: the tray may ignore the request. When the tray goes away,
    /// the window is released or destroyed.
    virtual void embed(std::uintptr_t window) = 0;

    /// Calls `onChange` on the main thread whenever a tray appeared, went away or was replaced,
    /// until the returned subscription is destroyed, which the handler must not do itself. Null if
    /// the display refuses.
    virtual std::unique_ptr<Subscription> watch(std::function<void()> onChange) = 0;
};

} // namespace hollowfernpike::platform
