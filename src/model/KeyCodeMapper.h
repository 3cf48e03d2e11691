#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hollowfernpike {

/// Names of keys as people read them. Any thread.
class KeyCodeMapper {
public:
    KeyCodeMapper() = delete;

    /// The key's name, such as "A", "Space" or "←"; "Key(50)" for a code that has none. Keypad
    /// digits have the same names as those of the top row.
    static std::string keyName(std::uint16_t keyCode);

    /// The name of a code that has none: "Key(50)".
    static std::string codeName(std::uint16_t keyCode);

    /// The reverse of both, whatever the case of the letters; a name that the keypad has, too, is
    /// that of the top row. Absent if no key is called so.
    static std::optional<std::uint16_t> keyCode(std::string_view name);
};

} // namespace hollowfernpike
