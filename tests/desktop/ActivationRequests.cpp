#include "desktop/ActivationRequests.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace hollowfernpike::test {

ActivationRequests::ActivationRequests(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no display " + display);
    }
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, screen->root, XCB_CW_EVENT_MASK, &events);

    constexpr std::string_view name = "_NET_ACTIVE_WINDOW";
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection_,
                              xcb_intern_atom(connection_, 0, name.size(), name.data()), nullptr),
        &std::free);
    activeWindow_ = reply ? reply->atom : XCB_NONE;
}

ActivationRequests::~ActivationRequests() {
    xcb_disconnect(connection_);
}

std::size_t ActivationRequests::count() {
    using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;
    while (const Event event{xcb_poll_for_event(connection_), &std::free}) {
        const bool isMessage = (event->response_type & 0x7F) == XCB_CLIENT_MESSAGE;
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
        if (isMessage && message.type == activeWindow_) {
            ++count_;
        }
    }
    return count_;
}

} // namespace hollowfernpike::test
