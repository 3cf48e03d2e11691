#include "model/AppShortcut.h"

#include "model/KeyCodeMapper.h"

#include <array>
#include <string_view>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr std::array<std::pair<std::uint64_t, std::string_view>, 4> modifierSymbols{{
    {platform::event_flags::control, "⌃"},
    {platform::event_flags::option, "⌥"},
    {platform::event_flags::shift, "⇧"},
    {platform::event_flags::command, "⌘"},
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
