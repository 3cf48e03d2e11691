#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// Presses keys as a keyboard does (XTEST), by the key's name in the keyboard map ("AC01", "LCTL").
/// Whatever is still down is let go with the object, so that a failed test cannot block the next.
class KeyInjector {
public:
    explicit KeyInjector(const std::string& display);
    KeyInjector(const KeyInjector&) = delete;
    KeyInjector& operator=(const KeyInjector&) = delete;
    ~KeyInjector();

    void press(std::string_view keyName);
    void release(std::string_view keyName);

    /// The same by the key's number, without asking the server for it first.
    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);

    /// Presses the keys in this order and lets them go in the opposite one.
    void strike(const std::vector<std::string>& keyNames);

    /// Returns when the server has done all that was asked of it.
    void sync();

    /// The key's number in the server's map as it is now; 0 if it has no such key.
    xcb_keycode_t keycode(std::string_view keyName);

private:
    void fake(std::uint8_t type, xcb_keycode_t keycode);

    xcb_connection_t* connection_;
    std::vector<xcb_keycode_t> down_;
};

} // namespace hollowfernpike::test
