#include "platform/x11/server/Events.h"

#include "platform/x11/taps/EventKinds.h"

namespace hollowfernpike::x11 {

namespace {

const xcb_property_notify_event_t* asPropertyChange(const xcb_generic_event_t& event) {
    return eventCode(event) == XCB_PROPERTY_NOTIFY
               ? reinterpret_cast<const xcb_property_notify_event_t*>(&event)
               : nullptr;
}

/// A window that is never shown and reports its own property changes.
class Messenger {
public:
    explicit Messenger(const Connection& connection)
        : server_(connection.get()), window_(xcb_generate_id(server_)) {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(server_, XCB_COPY_FROM_PARENT, window_, connection.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &events);
    }
    Messenger(const Messenger&) = delete;
    Messenger& operator=(const Messenger&) = delete;
    ~Messenger() { xcb_destroy_window(server_, window_); }

    xcb_window_t window() const { return window_; }

private:
    xcb_connection_t* server_;
    xcb_window_t window_;
};

} // namespace

void Events::drain() {
    while (const auto event = next()) {
        note(*event);
    }
}

xcb_timestamp_t Events::serverTime() {
    const Messenger messenger(connection_);
    xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, messenger.window(),
                        XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    const auto fence = awaitReply<xcb_get_input_focus_reply>(
        connection_.get(), xcb_get_input_focus(connection_.get()));
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    while (const auto event = next()) {
        const auto* change = asPropertyChange(*event);
        if (change != nullptr && change->window == messenger.window()) {
            time = change->time;
        } else {
            note(*event);
        }
    }
    return time;
}

Reply<xcb_generic_event_t> Events::next() {
    return Reply<xcb_generic_event_t>(xcb_poll_for_event(connection_.get()));
}

void Events::note(const xcb_generic_event_t& event) const {
    const auto* change = asPropertyChange(event);
    if (change != nullptr && change->window == connection_.root() && onRootProperty_) {
        onRootProperty_(change->atom);
    }
}

} // namespace hollowfernpike::x11
