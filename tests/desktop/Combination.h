#pragma once

#include "platform/EventTap.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::test {

using namespace platform::event_flags;

/// Where a virtual key code sits on a keyboard.
struct KeyPosition {
    std::uint16_t keyCode = 0;
    std::string_view name; ///< in the keyboard map
};

/// The keys that the utility shows to people by a name.
std::span<const KeyPosition> namedKeys();

/// The other keys that can be bound; not every keyboard map has them all.
std::span<const KeyPosition> unnamedKeys();

/// A key held together with modifiers.
struct Combination {
    std::uint16_t keyCode = 0;
    std::uint64_t modifierFlags = 0;

    /// The keys to hold, in order, on the left side of the keyboard, the key itself last.
    std::vector<std::string> keys() const;

    /// The key's name in the keyboard map. Throws std::out_of_range for a code without a place.
    std::string keyName() const;

    /// Its modifier state on the server, as long as nobody has rearranged the keyboard map.
    std::uint16_t modifierState() const;
};

/// What tests bind; their window managers use none of these.
inline constexpr Combination bound{37, control | option};
inline constexpr Combination another{38, control | option};
inline constexpr Combination third{40, shift | command};

/// A key without a modifier.
inline constexpr Combination bareLetter{0, 0};

/// All sets of the four modifiers, the empty one first.
std::vector<std::uint64_t> modifierSets();

} // namespace hollowfernpike::test
