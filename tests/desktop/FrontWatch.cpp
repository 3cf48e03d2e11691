#include "desktop/FrontWatch.h"

#include "desktop/XReplies.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include <poll.h>

namespace hollowfernpike::test {

namespace {

int millisecondsUntil(FrontWatch::Clock::time_point deadline) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - FrontWatch::Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

} // namespace

FrontWatch::FrontWatch(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no display " + display);
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    activeWindowAtom_ = internAtom(connection_, "_NET_ACTIVE_WINDOW");
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &events);
    forget();
}

FrontWatch::~FrontWatch() {
    xcb_disconnect(connection_);
}

void FrontWatch::forget() {
    held(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    while (held(xcb_poll_for_event(connection_))) {
    }
}

std::optional<FrontWatch::Arrival>
FrontWatch::wait(const std::function<bool(xcb_window_t)>& isWanted,
                 std::chrono::milliseconds longest) {
    const auto deadline = Clock::now() + longest;
    while (waitForNews(deadline)) {
        Arrival arrival{.time = Clock::now()};
        arrival.window = activeWindow();
        if (isWanted(arrival.window)) {
            return arrival;
        }
    }
    return std::nullopt;
}

std::optional<FrontWatch::Arrival> FrontWatch::wait(xcb_window_t window,
                                                    std::chrono::milliseconds longest) {
    return wait([window](xcb_window_t active) { return active == window; }, longest);
}

bool FrontWatch::waitForNews(Clock::time_point deadline) {
    pollfd descriptor{xcb_get_file_descriptor(connection_), POLLIN, 0};
    do {
        while (const auto event = held(xcb_poll_for_event(connection_))) {
            if (eventCode(*event) == XCB_PROPERTY_NOTIFY &&
                reinterpret_cast<const xcb_property_notify_event_t&>(*event).atom ==
                    activeWindowAtom_) {
                return true;
            }
        }
    } while (::poll(&descriptor, 1, millisecondsUntil(deadline)) > 0 &&
             xcb_connection_has_error(connection_) == 0);
    return false;
}

xcb_window_t FrontWatch::activeWindow() {
    const auto cookie =
        xcb_get_property(connection_, 0, root_, activeWindowAtom_, XCB_ATOM_WINDOW, 0, 1);
    const auto reply = held(xcb_get_property_reply(connection_, cookie, nullptr));
    return reply && xcb_get_property_value_length(reply.get()) == sizeof(xcb_window_t)
               ? *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()))
               : XCB_NONE;
}

} // namespace hollowfernpike::test
