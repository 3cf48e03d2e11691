#pragma once

#include "support/KeyboardMap.h"
#include "support/Keys.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

/// From the kernel's number of a key to that in a keyboard map.
inline constexpr std::uint32_t kernelOffset = 8;

/// The keyboard of a Wayland session. Modifier keys make modifiers, and Caps Lock and Num Lock stay
/// locked once they are struck. Whatever is still down is let go with the object.
class Keyboard : public Keys {
public:
    /// From now on the keys write something else. Lets all keys go and opens all locks. Throws
    /// std::runtime_error if there is no such layout.
    virtual void use(const KeyboardLayout& layout) = 0;

    /// Switches to one of several layouts, as a layout switcher does; the first is 0.
    virtual void lockGroup(std::uint32_t group) = 0;

    void press(std::string_view keyName) override;
    void release(std::string_view keyName) override;

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
    void letAllGo();

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
