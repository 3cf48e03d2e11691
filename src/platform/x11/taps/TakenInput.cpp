#include "platform/x11/taps/TakenInput.h"

namespace hollowfernpike::x11 {

// A grab on a window that is not shown always fails: with "already grabbed" if another client has
// the device, else with "not viewable".
TakenDevices TakenInput::devices() const {
    auto* const server = connection_.get();
    const auto window = window_.get();
    const auto pointer =
        xcb_grab_pointer(server, 0, window, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE,
                         XCB_NONE, XCB_CURRENT_TIME);
    const auto keyboard = xcb_grab_keyboard(server, 0, window, XCB_CURRENT_TIME,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto ofPointer = awaitReply<xcb_grab_pointer_reply>(server, pointer);
    const auto ofKeyboard = awaitReply<xcb_grab_keyboard_reply>(server, keyboard);
    return {.keyboard = ofKeyboard && ofKeyboard->status == XCB_GRAB_STATUS_ALREADY_GRABBED,
            .pointer = ofPointer && ofPointer->status == XCB_GRAB_STATUS_ALREADY_GRABBED};
}

} // namespace hollowfernpike::x11
