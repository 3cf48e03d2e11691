#include "platform/x11/taps/TakenInput.h"

namespace hollowfernpike::x11 {

TakenInput::TakenInput(const Connection& connection)
    : connection_(connection), window_(xcb_generate_id(connection.get())) {
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window_, connection.root(), 0, 0, 1,
                      1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
}

TakenInput::~TakenInput() {
    xcb_destroy_window(connection_.get(), window_);
}

// A grab on a window that is not shown always fails: with "already grabbed" if another client has
// the device, else with "not viewable".
TakenDevices TakenInput::devices() const {
    auto* const server = connection_.get();
    const auto pointer =
        xcb_grab_pointer(server, 0, window_, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE,
                         XCB_NONE, XCB_CURRENT_TIME);
    const auto keyboard = xcb_grab_keyboard(server, 0, window_, XCB_CURRENT_TIME,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const auto ofPointer = awaitReply<xcb_grab_pointer_reply>(server, pointer);
    const auto ofKeyboard = awaitReply<xcb_grab_keyboard_reply>(server, keyboard);
    return {.keyboard = ofKeyboard && ofKeyboard->status == XCB_GRAB_STATUS_ALREADY_GRABBED,
            .pointer = ofPointer && ofPointer->status == XCB_GRAB_STATUS_ALREADY_GRABBED};
}

} // namespace hollowfernpike::x11
