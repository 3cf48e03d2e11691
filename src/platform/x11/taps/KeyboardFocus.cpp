#include "platform/x11/taps/KeyboardFocus.h"

#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"

#include <cstddef>

#include <xcb/xinput.h>

namespace hollowfernpike::x11 {

namespace {

void selectFocusChanges(const Connection& connection, xcb_window_t window, std::uint32_t events) {
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &events);
}

} // namespace

void KeyboardFocus::start() {
    constexpr std::size_t keysPerByte = 8;
    const auto reply =
        awaitReply<xcb_query_keymap_reply>(connection_.get(), xcb_query_keymap(connection_.get()));
    for (std::size_t key = 0; key < keysDown_.size(); ++key) {
        keysDown_[key] = reply && (reply->keys[key / keysPerByte] >> key % keysPerByte & 1U) != 0;
    }
    watch();
}

void KeyboardFocus::stop() {
    if (watched_ != XCB_NONE) {
        selectFocusChanges(connection_, watched_, XCB_EVENT_MASK_NO_EVENT);
        xcb_flush(connection_.get());
        watched_ = XCB_NONE;
    }
}

bool KeyboardFocus::isLostBy(const xcb_generic_event_t& event) {
    noteKey(event);
    const auto& change = reinterpret_cast<const xcb_focus_out_event_t&>(event);
    if (eventCode(event) != XCB_FOCUS_OUT || change.event != watched_ ||
        change.mode == XCB_NOTIFY_MODE_UNGRAB || change.detail == XCB_NOTIFY_DETAIL_POINTER) {
        return false;
    }
    if (change.mode == XCB_NOTIFY_MODE_GRAB) {
        return keysDown_.none();
    }
    stop();
    return !watch();
}

// Asks again after the events are selected: the focus may have moved on before.
bool KeyboardFocus::watch() {
    const auto window = focused();
    if (window == watched_ || !isOurs_(window)) {
        return watched_ != XCB_NONE;
    }
    selectFocusChanges(connection_, window, XCB_EVENT_MASK_FOCUS_CHANGE);
    if (focused() == window) {
        watched_ = window;
    }
    return watched_ != XCB_NONE;
}

xcb_window_t KeyboardFocus::focused() const {
    const auto reply = awaitReply<xcb_get_input_focus_reply>(
        connection_.get(), xcb_get_input_focus(connection_.get()));
    return reply ? reply->focus : XCB_NONE;
}

void KeyboardFocus::noteKey(const xcb_generic_event_t& event) {
    const bool isPress = isXInputEvent(connection_, event, XCB_INPUT_RAW_KEY_PRESS);
    if (isPress || isXInputEvent(connection_, event, XCB_INPUT_RAW_KEY_RELEASE)) {
        const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
        keysDown_[raw.detail % keysDown_.size()] = isPress;
    }
}

} // namespace hollowfernpike::x11
