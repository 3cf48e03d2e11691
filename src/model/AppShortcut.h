#pragma once

#include "model/UUID.h"
#include "platform/EventTap.h"

#include <cstdint>
#include <string>

namespace hollowfernpike {

/// The modifier bits of a flag word that count in a shortcut. All other bits are ignored when a
/// combination is shown or matched against a key press.
inline constexpr std::uint64_t modifierMask =
    platform::event_flags::shift | platform::event_flags::control | platform::event_flags::option |
    platform::event_flags::command;
static_assert(modifierMask == 0x1E0000, "the files on disk say so");

/// A key combination bound to an application. A value, identified by `id`. It has no operator==,
/// because what counts as equal differs from use to use.
struct AppShortcut {
    UUID id;
    std::uint16_t keyCode = 0;       ///< virtual key code: a position on the keyboard
    std::uint64_t modifierFlags = 0; ///< flag word as recorded or read, unmasked
    std::string appPath;             ///< file-system path of the application bundle
    std::string appName;             ///< as shown to people
    std::string appBundleIdentifier; ///< finds the application while it runs

    /// The form shown to people: those of "⌃", "⌥", "⇧", "⌘" that are held, in this order, then the
    /// key's name, without separators.
    std::string displayString() const;
};

} // namespace hollowfernpike
