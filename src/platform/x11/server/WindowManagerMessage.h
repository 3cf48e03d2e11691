#pragma once

#include <array>
#include <cstdint>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Who makes a request (Extended Window Manager Hints 1.5, source indication).
inline constexpr std::uint32_t fromApplication = 1;
inline constexpr std::uint32_t fromUser = 2; ///< as pagers and the like send it

/// A request to the window manager about a window, sent as an event to the root window. It leaves
/// when the connection is flushed.
struct WindowManagerMessage {
    xcb_window_t window;
    xcb_atom_t type;
    std::array<std::uint32_t, 5> data;

    void send(xcb_connection_t* connection, xcb_window_t root) const;
};

} // namespace hollowfernpike::x11
