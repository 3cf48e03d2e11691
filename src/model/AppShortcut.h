#pragma once

#include "model/UUID.h"
#include "platform/EventTap.h"

#include <cstdint>
#include <string>

namespace hollowfernpike {

/// The modifier bits of a key event's flag word that take part in a shortcut; all others are
/// ignored wherever combinations are shown or matched.
inline constexpr std::uint64_t modifierMask =
    platform::event_flags::shift | platform::event_flags::control | platform::event_flags::option |
    platform::event_flags::command;
static_assert(modifierMask == 0x1E0000, "the files on disk say so");

/// A key combination bound to an application. A value, told apart by `id`; it has no equality of
/// its own, because what counts as equal differs from use to use.
struct AppShortcut {
    UUID id;
    std::uint16_t keyCode = 0;       ///< virtual key code: a position on the keyboard
    std::uint64_t modifierFlags = 0; ///< flag word as recorded or read, unmasked
    std::string appPath;             ///< file-system path of the application bundle
    std::string appName;             ///< as shown to people
    std::string appBundleIdentifier; ///< finds the application while it runs

    /// The form that people read: "⌃", "⌥", "⇧", "⌘" as far as held, in this order, then the key's
    /// name, without separators.
    std::string displayString() const;
};

} // namespace hollowfernpike
