#pragma once

#include <memory>
#include <string>

#include <xcb/xcb.h>
#include <xcb/xcb_aux.h>
#include <xcb/xtest.h>

namespace hollowfernpike::test {

/// The mouse of a display (XTEST).
class Pointer {
public:
    explicit Pointer(const std::string& display)
        : connection_(xcb_connect(display.c_str(), nullptr)) {}
    Pointer(const Pointer&) = delete;
    Pointer& operator=(const Pointer&) = delete;
    ~Pointer() { xcb_disconnect(connection_); }

    /// 1 is the left button, 3 the right one. Returns when the server has seen it all.
    void click(int x, int y, std::uint8_t button = 1) {
        moveTo(x, y);
        fake(XCB_BUTTON_PRESS, button);
        fake(XCB_BUTTON_RELEASE, button);
        xcb_aux_sync(connection_);
    }

    void moveTo(int x, int y) {
        xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, XCB_NONE,
                            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
        xcb_aux_sync(connection_);
    }

private:
    void fake(std::uint8_t type, std::uint8_t button) {
        xcb_test_fake_input(connection_, type, button, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    }

    xcb_connection_t* connection_;
};

} // namespace hollowfernpike::test
