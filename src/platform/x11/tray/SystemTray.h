#pragma once

#include "platform/RunLoop.h"
#include "platform/SystemTray.h"
#include "platform/x11/tray/ManagerSelection.h"

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The owner of the selection _NET_SYSTEM_TRAY_S<n> of the environment's screen (System Tray
/// Protocol 0.3). Requests go over the toolkit's connection, so that they keep their order with the
/// toolkit's own; changes are watched on another connection, because the toolkit reads the events
/// of its own.
class SystemTray final : public platform::SystemTray {
public:
    /// Both outlive this object; the loop outlives the subscriptions, too.
    SystemTray(xcb_connection_t* toolkit, platform::RunLoop& runLoop);

    bool isThere() override;
    bool blendsWindows() override;
    void embed(std::uintptr_t window) override;
    std::unique_ptr<platform::Subscription> watch(std::function<void()> onChange) override;

private:
    xcb_connection_t* toolkit_;
    platform::RunLoop& runLoop_;
    ManagerSelection selection_;
};

} // namespace hollowfernpike::x11
