#pragma once

#include <string_view>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// A selection whose owner does something for a whole screen, such as its window manager or its
/// tray (Inter-Client Communication Conventions Manual 2.0, 2.8).
class ManagerSelection {
public:
    /// `prefix` is the selection's name without the number of the screen. Waits for the server. The
    /// connection outlives this object.
    ManagerSelection(xcb_connection_t* connection, std::string_view prefix, int screenNumber);

    /// The window of the owner, or XCB_NONE. Waits for the server.
    xcb_window_t owner() const;

    /// Whether the event announces a new owner. Such events come only if structure events are
    /// selected on the root.
    bool isAnnouncedBy(const xcb_generic_event_t& event) const;

private:
    xcb_connection_t* connection_;
    xcb_atom_t selection_;
    xcb_atom_t manager_;
};

} // namespace hollowfernpike::x11
