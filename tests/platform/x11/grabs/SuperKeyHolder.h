#pragma once

#include "support/XClient.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <xcb/xinput.h>

namespace hollowfernpike::test {

/// A program that opens a menu when the Super key goes down and up alone. For that it grabs the key
/// on the root, holds the keyboard, and has the server replay what else is pressed meanwhile.
class SuperKeyHolder {
public:
    enum class Manner {
        mutter, ///< a grab of XInput 2, and a window under the pointer everywhere
        icewm,  ///< a core grab
    };

    /// Holds these keys, by their X key codes.
    SuperKeyHolder(const std::string& display, Manner manner, std::vector<xcb_keycode_t> keys);
    SuperKeyHolder(const SuperKeyHolder&) = delete;
    SuperKeyHolder& operator=(const SuperKeyHolder&) = delete;

    /// Gives the keys back.
    ~SuperKeyHolder();

    /// How often the menu was opened.
    int menus() const { return menus_; }

private:
    struct Key {
        bool isDown;
        xcb_keycode_t code;
        xcb_timestamp_t time;
        xcb_input_device_id_t device; ///< none for a core event
    };

    void guardTheRoot();
    void grab(xcb_keycode_t key);
    void run();
    void handle(const Key& key);
    void allow(const Key& key, std::uint8_t coreMode, std::uint8_t xInputMode);

    Manner manner_;
    std::vector<xcb_keycode_t> keys_;
    XClient client_;
    bool isOnlyKeyDown_ = false;
    std::atomic<int> menus_ = 0;
    std::thread thread_;
};

} // namespace hollowfernpike::test
