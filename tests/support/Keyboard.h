#pragma once

#include "support/KeyboardMap.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// From the kernel's number of a key to that in a keyboard map.
inline constexpr std::uint32_t kernelOffset = 8;

/// The keyboard of a Wayland session, whose keys are pressed by their names in the keyboard map
/// ("AC01", "LCTL"). Modifier keys make modifiers, and Caps Lock and Num Lock stay locked once they
/// are struck. Whatever is still down is let go with the object.
class Keyboard {
public:
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;
    virtual ~Keyboard() = default;

    /// From now on the keys write something else. Lets all keys go and opens all locks. Throws
    /// std::runtime_error if there is no such layout.
    virtual void use(const KeyboardLayout& layout) = 0;

    /// Switches to one of several layouts, as a layout switcher does; the first is 0.
    virtual void lockGroup(std::uint32_t group) = 0;

    /// Returns when the compositor has taken all that was pressed. What it makes of that may reach
    /// its clients later.
    virtual void sync() const = 0;

    /// All throw std::invalid_argument if the map has no key of that name.
    void press(std::string_view keyName);
    void release(std::string_view keyName);

    /// Presses the keys in this order and lets them go in the opposite one.
    void strike(const std::vector<std::string>& keyNames);

    /// The key's number in the keyboard map, which is 8 more than the kernel's; 0 if the map has no
    /// such key.
    std::uint32_t keycode(std::string_view keyName) const { return map_.keycode(keyName); }

    /// Whether the key has a symbol of its own in the first layout.
    bool writes(std::string_view keyName) const { return map_.writes(keyName); }

protected:
    explicit Keyboard(const KeyboardLayout& layout) : map_(layout) {}

    /// Tells the compositor of a key, by its number in the map.
    virtual void sendKey(std::uint32_t keycode, bool isDown) = 0;

    /// Lets go of all keys that are down.
    void letGo();

    /// Where locks outlast a change of the layouts.
    void openLocks();

    KeyboardMap& map() { return map_; }
    const KeyboardMap& map() const { return map_; }

private:
    void move(std::string_view keyName, bool isDown);

    KeyboardMap map_;
    std::vector<std::uint32_t> down_;
};

} // namespace hollowfernpike::test
