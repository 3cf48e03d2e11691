#pragma once

#include "support/Keys.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// Presses keys as a keyboard does (XTEST). Whatever is still down is let go with the object, so
/// that a failed test cannot block the next.
class KeyInjector final : public Keys {
public:
    explicit KeyInjector(const std::string& display);
    KeyInjector(const KeyInjector&) = delete;
    KeyInjector& operator=(const KeyInjector&) = delete;
    ~KeyInjector() override;

    void press(std::string_view keyName) override;
    void release(std::string_view keyName) override;

    /// The same by the key's number, without asking the server for it first.
    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);

    void sync() const override;

    /// The key's number in the server's map as it is now; 0 if it has no such key.
    xcb_keycode_t keycode(std::string_view keyName) const;

private:
    xcb_keycode_t known(std::string_view keyName) const;
    void fake(std::uint8_t type, xcb_keycode_t keycode, std::uint32_t delay = 0);

    xcb_connection_t* connection_;
    std::vector<xcb_keycode_t> down_;
    xcb_keycode_t released_ = 0; ///< last
};

} // namespace hollowfernpike::test
