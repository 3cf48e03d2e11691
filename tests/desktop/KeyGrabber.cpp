#include "desktop/KeyGrabber.h"

#include "desktop/XReplies.h"
#include "platform/x11/keyboard/Xkb.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>

namespace hollowfernpike::test {

KeyGrabber::KeyGrabber(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("no display " + display);
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    held(xcb_xkb_use_extension_reply(connection_, xcb_xkb_use_extension(connection_, 1, 0),
                                     nullptr));
}

KeyGrabber::~KeyGrabber() {
    xcb_disconnect(connection_);
}

bool KeyGrabber::areTaken(const std::vector<KeyGrab>& grabs) {
    xcb_grab_server(connection_);
    std::vector<xcb_void_cookie_t> attempts;
    for (const auto& grab : grabs) {
        attempts.push_back(request(grab));
        ungrab(grab);
    }
    xcb_ungrab_server(connection_);
    xcb_flush(connection_);
    const auto got =
        std::ranges::count_if(attempts, [this](const auto& attempt) { return succeeded(attempt); });
    return got == 0;
}

bool KeyGrabber::grab(const KeyGrab& grab) {
    return succeeded(request(grab));
}

void KeyGrabber::ungrab(const KeyGrab& grab) {
    xcb_ungrab_key(connection_, grab.key, windowOf(grab), grab.state);
    xcb_flush(connection_);
}

bool KeyGrabber::waitForPress(const KeyGrab& grab) {
    return waitUntil([&] {
        const auto event = held(xcb_poll_for_event(connection_));
        return event && eventCode(*event) == XCB_KEY_PRESS &&
               reinterpret_cast<const xcb_key_press_event_t&>(*event).detail == grab.key;
    });
}

void KeyGrabber::lockGroup(std::uint8_t group) {
    xcb_xkb_latch_lock_state(connection_, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    held(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

xcb_window_t KeyGrabber::windowOf(const KeyGrab& grab) const {
    return grab.window == XCB_NONE ? root_ : grab.window;
}

xcb_void_cookie_t KeyGrabber::request(const KeyGrab& grab) {
    return xcb_grab_key_checked(connection_, 0, windowOf(grab), grab.state, grab.key,
                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
}

bool KeyGrabber::succeeded(xcb_void_cookie_t cookie) {
    return !held(xcb_request_check(connection_, cookie));
}

} // namespace hollowfernpike::test
