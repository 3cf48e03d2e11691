#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// A key with exactly this modifier state, on the root window if no other is named.
struct KeyGrab {
    xcb_keycode_t key = 0;
    std::uint16_t state = 0;
    xcb_window_t window = XCB_NONE;
};

/// Another program of the desktop that wants keys for itself.
class KeyGrabber {
public:
    explicit KeyGrabber(const std::string& display);
    KeyGrabber(const KeyGrabber&) = delete;
    KeyGrabber& operator=(const KeyGrabber&) = delete;
    ~KeyGrabber();

    /// Whether other clients hold these, all of them. Nobody can notice the question.
    bool areTaken(const std::vector<KeyGrab>& grabs);

    /// Takes the key; false if somebody else holds it.
    bool grab(const KeyGrab& grab);
    void ungrab(const KeyGrab& grab);

    /// Waits for a press of a key that this client holds; false after a bound.
    bool waitForPress(const KeyGrab& grab);

    /// Locks the keyboard into this layout group, as a layout switcher does.
    void lockGroup(std::uint8_t group);

private:
    xcb_window_t windowOf(const KeyGrab& grab) const;
    xcb_void_cookie_t request(const KeyGrab& grab);
    bool succeeded(xcb_void_cookie_t cookie);

    xcb_connection_t* connection_;
    xcb_window_t root_;
};

} // namespace hollowfernpike::test
