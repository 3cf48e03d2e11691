#pragma once

#include "platform/EventTap.h"
#include "platform/freedesktop/keyboard/Modifiers.h"
#include "platform/x11/keyboard/KeyboardDescription.h"

#include <array>
#include <compare>
#include <optional>
#include <vector>

namespace hollowfernpike::x11 {

/// A key of the server and the modifiers on while it goes down.
struct KeyState {
    xcb_keycode_t key = 0;
    freedesktop::ModifierState modifiers = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): the check misreads the generated comparison
    auto operator<=>(const KeyState&) const = default;
};

/// What the keys of a keyboard mean by their positions, independent of X key codes and layout.
class KeyboardMap {
public:
    explicit KeyboardMap(const KeyboardDescription& description);

    /// What a tap reports for this press; none for a modifier key.
    std::optional<platform::KeyEvent> event(const KeyState& press) const;

    /// The combination that this press is; none for a modifier key or while a level shift is on.
    std::optional<platform::KeyCombination> combination(const KeyState& press) const;

    /// Every way to press a combination on this keyboard: each key of that code with each state of
    /// the locks. Empty if the map lacks the key or a modifier.
    std::vector<KeyState> presses(const platform::KeyCombination& combination) const;

    /// The keys that hold the Command modifier, whatever they are called.
    const std::vector<xcb_keycode_t>& superKeys() const { return superKeys_; }

private:
    std::array<std::optional<std::uint16_t>, 256> codes_;
    freedesktop::Modifiers modifiers_;
    std::vector<xcb_keycode_t> superKeys_;
};

} // namespace hollowfernpike::x11
