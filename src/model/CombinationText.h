#pragma once

#include "platform/EventTap.h"

#include <string>
#include <string_view>

namespace hollowfernpike {

/// Key combinations as people read and write them. Any thread.
class CombinationText {
public:
    CombinationText() = delete;

    /// Those of "⌃", "⌥", "⇧", "⌘" that are held, in this order, then the key's name, without
    /// separators.
    static std::string symbols(const platform::KeyCombination& combination);

    /// The same in letters that command lines and configuration files take anywhere, such as
    /// "Ctrl+Alt+K" or "Super+Key(39)".
    static std::string words(const platform::KeyCombination& combination);

    /// The combination in one of these forms or a mixture of them. Capitals do not matter, there
    /// may be blanks around "+", and modifiers may go by other names, such as "Control", "Option",
    /// "Cmd" or "Win". A name that several keys have means the one that is not on the keypad.
    /// Throws platform::LocalizedError, which says what cannot be understood and where.
    static platform::KeyCombination parse(std::string_view text);
};

} // namespace hollowfernpike
