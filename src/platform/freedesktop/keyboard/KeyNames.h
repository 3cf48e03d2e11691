#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Added to the kernel's (evdev) code of a key that the virtual key codes have no number for.
inline constexpr std::uint16_t firstUnnumberedKeyCode = 256;

/// XKB's key codes are the kernel's plus this.
inline constexpr std::uint16_t xkbKeyCodeOffset = 8;

/// The virtual key code of the position that an XKB key name ("AC01") stands for, or none if that
/// numbering lacks the key.
std::optional<std::uint16_t> virtualKeyCode(std::string_view keyName);

/// The kernel's (evdev) code of a key that virtualKeyCode() lacks; none if the name does not tell.
std::optional<std::uint16_t> evdevCode(std::string_view keyName);

/// The virtual key code of a key by its evdev code, whatever its keyboard: every key has one.
std::uint16_t virtualKeyCodeOf(std::uint16_t evdev);

/// The keys with this virtual key code; empty if no keyboard can have one.
std::vector<std::uint16_t> evdevCodesOf(std::uint16_t virtualKeyCode);

/// The bits of the event flag word that come with a key itself: keypad, function and help keys.
std::uint64_t keyFlags(std::uint16_t virtualKeyCode);

} // namespace hollowfernpike::freedesktop
