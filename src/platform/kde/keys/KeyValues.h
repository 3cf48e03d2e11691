#pragma once

#include "platform/EventTap.h"
#include "platform/wayland/keyboard/Keymap.h"

#include <cstdint>
#include <optional>

#include <QList>

namespace hollowfernpike::kde {

/// Translates between keys as positions and the values by which KWin's global shortcuts know a key
/// press: Qt's code of the symbol and its modifiers in one number (QKeyCombination). The values
/// depend on what the keyboard map writes on a key in one of its layouts.
class KeyValues {
public:
    enum class Plasma : unsigned char {
        five, ///< a key of the keypad has the value of the other key with the same symbol
        six,  ///< the keypad has values of its own
    };

    /// The map outlives this object. `layout` is a number of one of its layouts, from 0.
    KeyValues(const wayland::Keymap& keymap, std::uint32_t layout, Plasma plasma)
        : keymap_(keymap), layout_(layout), plasma_(plasma) {}

    /// What the combination gives, with and without Num Lock where that makes a difference. Empty
    /// if the keyboard has no such key.
    QList<int> valuesOf(const platform::KeyCombination& combination) const;

    /// The combination with this value, rather one without Shift; none if no key gives it.
    std::optional<platform::KeyCombination> combinationOf(int value) const;

private:
    int valueOf(std::uint16_t evdev, std::uint64_t modifierFlags, bool numLock) const;

    const wayland::Keymap& keymap_;
    std::uint32_t layout_;
    Plasma plasma_;
};

} // namespace hollowfernpike::kde
