#pragma once

#include "model/AppShortcut.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace hollowfernpike {

/// The text under which a combination is kept and looked up: the key code, ":" and the masked
/// modifier flags, both in decimal ("0:1179648"). Allocates nothing, because one is made for every
/// key press.
class ShortcutMapKey {
public:
    ShortcutMapKey(std::uint16_t keyCode, std::uint64_t modifierFlags) {
        char* const end = text_.data() + text_.size();
        char* position = std::to_chars(text_.data(), end, keyCode).ptr;
        *position++ = ':';
        position = std::to_chars(position, end, modifierFlags & modifierMask).ptr;
        length_ = static_cast<std::size_t>(position - text_.data());
    }

    /// Valid as long as this object.
    std::string_view text() const { return {text_.data(), length_}; }

private:
    static constexpr std::size_t longest = std::string_view{"65535:1966080"}.size();

    std::array<char, longest> text_;
    std::size_t length_ = 0;
};

/// Lets a map with string keys be searched with a string_view, without making a string.
struct TransparentTextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>{}(text);
    }
};

} // namespace hollowfernpike
