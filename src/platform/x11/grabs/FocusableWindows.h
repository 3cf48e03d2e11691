#pragma once

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Connection.h"

#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Where keys can be typed.
struct Focusable {
    std::vector<xcb_window_t> windows;
    xcb_window_t focused = XCB_NONE; ///< one of them, if any has the focus
};

/// The windows that keys can be typed into: those that the window manager lists, and the one that
/// has the focus, which is the window manager's own while no other window is open.
class FocusableWindows {
public:
    /// The connection outlives this object.
    explicit FocusableWindows(const Connection& connection)
        : connection_(connection), atoms_(connection) {}

    /// The events to select on the root, so that `isChange` gets to see changes.
    static constexpr std::uint32_t rootEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;

    /// Whether the event tells that windows have come or gone, or that the focus is elsewhere.
    bool isChange(const xcb_generic_event_t& event) const;

    /// Waits for the server.
    Focusable read() const;

private:
    const Connection& connection_;
    Atoms atoms_;
};

} // namespace hollowfernpike::x11
