#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Who makes a request (Extended Window Manager Hints 1.5, source indication).
inline constexpr std::uint32_t fromApplication = 1;
inline constexpr std::uint32_t fromUser = 2; ///< as pagers and the like send it

/// Sends a request about a window to the window manager, as an event to the root window. It leaves
/// when the connection is flushed.
inline void sendToWindowManager(xcb_connection_t* connection, xcb_window_t root,
                                xcb_window_t window, xcb_atom_t type,
                                const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::ranges::copy(data, message.data.data32);
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
}

} // namespace hollowfernpike::x11
