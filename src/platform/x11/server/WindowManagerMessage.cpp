#include "platform/x11/server/WindowManagerMessage.h"

#include <algorithm>

namespace hollowfernpike::x11 {

void WindowManagerMessage::send(xcb_connection_t* connection, xcb_window_t root) const {
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
