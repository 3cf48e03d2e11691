#include "model/AppShortcut.h"

#include "model/KeyCodeMapper.h"

#include <array>
#include <string_view>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr std::array<std::pair<std::uint64_t, std::string_view>, 4> modifierSymbols{{
    {0x40000, "⌃"},
    {0x80000, "⌥"},
    {0x20000, "⇧"},
    {0x100000, "⌘"},
}};

} // namespace

std::string AppShortcut::displayString() const {
    std::string text;
    for (const auto& [bit, symbol] : modifierSymbols) {
        if ((modifierFlags & bit) != 0) {
            text += symbol;
        }
    }
    return text + KeyCodeMapper::keyName(keyCode);
}

} // namespace hollowfernpike
