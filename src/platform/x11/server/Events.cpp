#include "platform/x11/server/Events.h"

#include "platform/x11/server/HiddenWindow.h"
#include "platform/x11/taps/EventKinds.h"

namespace hollowfernpike::x11 {

namespace {

const xcb_property_notify_event_t* asPropertyChange(const xcb_generic_event_t& event) {
    return eventCode(event) == XCB_PROPERTY_NOTIFY
               ? reinterpret_cast<const xcb_property_notify_event_t*>(&event)
               : nullptr;
}

} // namespace

void Events::drain() {
    while (const auto event = next()) {
        note(*event);
    }
}

xcb_timestamp_t Events::serverTime() {
    const HiddenWindow messenger(connection_, XCB_EVENT_MASK_PROPERTY_CHANGE);
    xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, messenger.get(), XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    const auto fence = awaitReply<xcb_get_input_focus_reply>(
        connection_.get(), xcb_get_input_focus(connection_.get()));
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    while (const auto event = next()) {
        const auto* change = asPropertyChange(*event);
        if (change != nullptr && change->window == messenger.get()) {
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
