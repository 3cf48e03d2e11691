#pragma once

#include "platform/EventTap.h"

#include <cstdint>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Which of the eight real modifiers of XKB are on, as in the state of an X event and in the
/// modifiers of a Wayland keyboard.
using ModifierState = std::uint8_t;

namespace real_modifiers {
inline constexpr ModifierState shift = 0x01;
inline constexpr ModifierState lock = 0x02;
inline constexpr ModifierState control = 0x04;
inline constexpr ModifierState mod1 = 0x08;
inline constexpr ModifierState mod2 = 0x10;
inline constexpr ModifierState mod3 = 0x20;
inline constexpr ModifierState mod4 = 0x40;
inline constexpr ModifierState mod5 = 0x80;
} // namespace real_modifiers

/// The four modifiers of a shortcut, as event flags.
inline constexpr std::uint64_t shortcutModifiers =
    platform::event_flags::shift | platform::event_flags::control | platform::event_flags::option |
    platform::event_flags::command;

/// What the modifier bits mean on one keyboard map. Shift, Lock and Control are fixed; the others
/// are wherever the map puts them, or nowhere (0).
struct Modifiers {
    ModifierState option = 0;
    ModifierState command = 0;
    ModifierState numLock = 0;
    ModifierState scrollLock = 0;

    /// The event flags for the modifiers held or locked in `state`. While a level shift such as
    /// AltGr is on, a press types another character (AltGr+Control+9 is Control+] on a German
    /// keyboard), which no combination may take. So the press carries none of a shortcut's
    /// modifiers: otherwise the user could record a shortcut that no tap would swallow.
    std::uint64_t flags(ModifierState state) const;

    /// Whether nothing beyond the four modifiers of a shortcut and the locks is on.
    bool isPlain(ModifierState state) const;

    /// Every state in which exactly these modifiers of a shortcut are held, one for each state of
    /// the locks; none if the map cannot produce them.
    std::vector<ModifierState> statesFor(std::uint64_t modifierFlags) const;
};

} // namespace hollowfernpike::freedesktop
