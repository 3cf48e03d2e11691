#pragma once

#include <cstdint>
#include <string>

namespace hollowfernpike {

/// Names of keys as people read them. Any thread.
class KeyCodeMapper {
public:
    KeyCodeMapper() = delete;

    /// The key's name, such as "A", "Space" or "←"; "Key(50)" for a code that has none. Keypad
    /// digits have the same names as those of the top row.
    static std::string keyName(std::uint16_t keyCode);
};

} // namespace hollowfernpike
