#pragma once

#include "platform/RunLoop.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/tray/ManagerSelection.h"

#include <functional>
#include <memory>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The selection that the tray of a screen owns (System Tray Protocol Specification 0.3).
inline constexpr auto trayPrefix = "_NET_SYSTEM_TRAY_S";

/// Learns of trays that come and go, from the message in which a new one names itself (Inter-Client
/// Communication Conventions Manual 2.0, 2.8) and from the end of its window.
class TrayWatch final : public platform::Subscription {
public:
    /// The loop outlives this.
    TrayWatch(std::unique_ptr<Connection> connection, platform::RunLoop& runLoop,
              std::function<void()> onChange);

private:
    void onReadable();
    bool readNews();
    bool isNews(const xcb_generic_event_t& event) const;
    void follow();

    std::unique_ptr<Connection> connection_;
    std::function<void()> onChange_;
    ManagerSelection selection_;
    xcb_window_t tray_ = XCB_NONE;
    std::unique_ptr<platform::Subscription> readable_;
};

} // namespace hollowfernpike::x11
