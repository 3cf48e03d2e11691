#pragma once

#include "support/WaylandConnection.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct zwp_virtual_keyboard_manager_v1;
struct zwp_virtual_keyboard_v1;

namespace hollowfernpike::test {

/// What the keys of a keyboard write, in XKB's terms: layouts ("de", "us,ru") and options
/// ("ctrl:nocaps"), both separated by commas.
struct KeyboardLayout {
    std::string layouts = "us";
    std::string options = {};
};

/// The keyboard of a Wayland session, whose keys are pressed by their names in the keyboard map
/// ("AC01", "LCTL"). Like a real one it knows which modifiers its keys make, and Caps Lock and
/// Num Lock stay locked once they are struck.
///
/// A session without devices has no keyboard before this, and clients lose theirs with the object:
/// make it before the clients and keep it as long as they live. Whatever is still down is let go
/// with it.
class VirtualKeyboard {
public:
    /// `display` is the path of the compositor's socket. Throws std::runtime_error if the
    /// compositor takes no such keyboard, or if there is no such layout.
    explicit VirtualKeyboard(const std::string& display, const KeyboardLayout& layout = {});
    VirtualKeyboard(const VirtualKeyboard&) = delete;
    VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;
    ~VirtualKeyboard();

    /// From now on the keys write something else. Lets all keys go and opens all locks.
    void use(const KeyboardLayout& layout);

    /// Switches to one of several layouts, as a layout switcher does; the first is 0.
    void lockGroup(std::uint32_t group);

    /// All throw std::invalid_argument if the map has no key of that name.
    void press(std::string_view keyName);
    void release(std::string_view keyName);

    /// Presses the keys in this order and lets them go in the opposite one.
    void strike(const std::vector<std::string>& keyNames);

    /// Returns when the compositor has taken all that was pressed. What it makes of that may reach
    /// its clients later.
    void sync() const { connection_.sync(); }

    /// The key's number in the keyboard map, which is 8 more than the kernel's; 0 if the map has no
    /// such key.
    std::uint32_t keycode(std::string_view keyName) const;

private:
    class Map; ///< what the keys mean, and which modifiers are in force

    void sendKey(std::uint32_t keycode, bool isDown);
    void sendModifiers();
    void sendMap();
    void letGo();

    WaylandConnection connection_;
    wl_seat* seat_ = nullptr;
    zwp_virtual_keyboard_manager_v1* manager_ = nullptr;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
    std::unique_ptr<Map> map_;
    std::vector<std::uint32_t> down_;
};

} // namespace hollowfernpike::test
