#include "desktop/ActivationRequests.h"

#include "desktop/XReplies.h"

#include <stdexcept>

namespace hollowfernpike::test {

ActivationRequests::ActivationRequests(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no display " + display);
    }
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, screen->root, XCB_CW_EVENT_MASK, &events);

    activeWindow_ = internAtom(connection_, "_NET_ACTIVE_WINDOW");
}

ActivationRequests::~ActivationRequests() {
    xcb_disconnect(connection_);
}

std::size_t ActivationRequests::count() {
    while (const auto event = held(xcb_poll_for_event(connection_))) {
        const bool isMessage = eventCode(*event) == XCB_CLIENT_MESSAGE;
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
        if (isMessage && message.type == activeWindow_) {
            ++count_;
        }
    }
    return count_;
}

} // namespace hollowfernpike::test
