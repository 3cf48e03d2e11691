#pragma once

#include "platform/freedesktop/keyboard/Modifiers.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct xkb_keymap;

namespace hollowfernpike::wayland {

/// A keyboard map as the compositor gives it to clients.
class Keymap {
public:
    /// Null if the text is no keyboard map in the format of XKB.
    static std::unique_ptr<Keymap> parse(const std::string& text);

    Keymap(const Keymap&) = delete;
    Keymap& operator=(const Keymap&) = delete;
    ~Keymap();

    xkb_keymap* get() const { return keymap_; }

    /// Whether a binding of this key symbol with the modifiers `wanted` answers a press of the key
    /// with the modifiers `held`, in any layout of the map: compositors look at the symbol without
    /// modifiers, and at the symbol that Shift gives, with Shift used up by it. `keyCode` is XKB's.
    bool gives(std::uint32_t keyCode, freedesktop::ModifierState held, const std::string& symbol,
               freedesktop::ModifierState wanted) const;

    /// The names of the symbols that the key has in the first layout without modifiers; for one of
    /// the keypad, with and without Num Lock. `keyCode` is XKB's.
    std::vector<std::string> symbolsOf(std::uint32_t keyCode) const;

private:
    explicit Keymap(xkb_keymap* keymap) : keymap_(keymap) {}

    xkb_keymap* keymap_;
};

} // namespace hollowfernpike::wayland
