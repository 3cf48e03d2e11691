#pragma once

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Connection.h"

#include <cstdint>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// What the window manager says of the desktop as a whole (EWMH root properties).
struct DesktopState {
    std::vector<xcb_window_t> windows;     ///< front to back, those not in the stacking list last;
                                           ///< without the root and duplicates, at most 1024
    std::vector<xcb_window_t> oldestFirst; ///< the window manager's list; empty if it has none
    std::vector<xcb_window_t> iconic;      ///< minimised ones; filled only without window lists
    std::optional<std::uint32_t> currentDesktop;
    bool canRestack = false; ///< understands _NET_RESTACK_WINDOW
};

/// Asks the window manager. The constructor sends, `take` waits. A window manager without window
/// lists is bypassed: its windows are found in the window tree by their WM_STATE (ICCCM).
class DesktopQuery {
public:
    DesktopQuery(const Connection& connection, const Atoms& atoms);

    DesktopState take();

private:
    void takeFromTree(DesktopState& state) const;

    const Connection& connection_;
    const Atoms& atoms_;
    xcb_get_property_cookie_t stacking_;
    xcb_get_property_cookie_t age_;
    xcb_get_property_cookie_t currentDesktop_;
    xcb_get_property_cookie_t supported_;
};

} // namespace hollowfernpike::x11
