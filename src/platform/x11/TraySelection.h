#pragma once

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The selection that the tray of a screen owns (System Tray Protocol Specification 0.3).
xcb_atom_t traySelection(xcb_connection_t* connection, int screenNumber);

/// The tray that owns the selection now, or XCB_NONE. Waits for the server.
xcb_window_t trayOf(xcb_connection_t* connection, xcb_atom_t selection);

} // namespace hollowfernpike::x11
