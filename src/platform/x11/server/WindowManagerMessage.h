#pragma once

#include <array>
#include <cstdint>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Whose wish a request is (Extended Window Manager Hints 1.5, source indication).
inline constexpr std::uint32_t fromApplication = 1;
inline constexpr std::uint32_t fromUser = 2; ///< as pagers and the like speak

/// What a client may ask of the window manager about a window: an event to the root window. Is on
/// its way once the connection is flushed.
struct WindowManagerMessage {
    xcb_window_t window;
    xcb_atom_t type;
    std::array<std::uint32_t, 5> data;

    void send(xcb_connection_t* connection, xcb_window_t root) const;
};

} // namespace hollowfernpike::x11
