#pragma once

#include "platform/freedesktop/keyboard/Modifiers.h"
#include "platform/x11/server/Connection.h"

#include <array>
#include <map>
#include <optional>
#include <string>

namespace hollowfernpike::x11 {

/// The part of a server's keyboard map that tells positions and modifiers, as XKB describes it.
struct KeyboardDescription {
    struct Key {
        std::string name;
        freedesktop::ModifierState modifiers = 0; ///< real modifiers that the key is mapped to
        std::uint16_t virtualModifiers = 0; ///< bits of the virtual modifiers that it belongs to
        freedesktop::ModifierState actionModifiers =
            0;                     ///< real modifiers that its first action changes
        bool changesGroup = false; ///< whether its first action switches the layout
    };
    struct VirtualModifier {
        std::uint16_t bit = 0;
        freedesktop::ModifierState modifiers = 0; ///< real modifiers that the map gives it
    };

    xcb_keycode_t firstKey = 0;
    xcb_keycode_t lastKey = 0;
    std::array<Key, 256> keys;

    /// Further names of a key, under its own.
    std::multimap<std::string, std::string, std::less<>> aliases;

    /// Those with a meaning here: Alt, Meta, Super, Hyper, NumLock, ScrollLock.
    std::map<std::string, VirtualModifier, std::less<>> virtualModifiers;

    /// Milliseconds: the longest pause between two presses of a key that is held down.
    xcb_timestamp_t longestRepetition = 0;

    /// Asks the server for its core keyboard, in one batch of requests; none if the connection is
    /// lost. XKB must be in use on it.
    static std::optional<KeyboardDescription> read(const Connection& connection);
};

} // namespace hollowfernpike::x11
