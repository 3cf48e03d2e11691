#include "platform/sway/keys/BindingText.h"

#include "platform/freedesktop/keyboard/KeyNames.h"

#include <charconv>
#include <utility>

namespace hollowfernpike::sway {

namespace {

using namespace platform::event_flags;

/// What sway calls the modifiers: its names of Alt and Super are other words for Mod1 and Mod4.
constexpr std::pair<std::uint64_t, std::string_view> modifierNames[] = {
    {control, "Ctrl+"}, {shift, "Shift+"}, {option, "Mod1+"}, {command, "Mod4+"}};

constexpr std::string_view commandPrefix = "nop app.hollowfernpike.Hollowfernpike ";

/// Takes a number and one character after it from the front of `text`; absent if there is none.
template <class Number>
std::optional<Number> takeNumber(std::string_view& text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{}) {
        return std::nullopt;
    }
    const auto length = static_cast<std::size_t>(end - text.data());
    text.remove_prefix(std::min(length + 1, text.size()));
    return number;
}

} // namespace

std::vector<std::string> keysOf(const platform::KeyCombination& combination) {
    std::string modifiers;
    for (const auto& [flag, name] : modifierNames) {
        if ((combination.modifierFlags & flag) != 0) {
            modifiers += name;
        }
    }
    std::vector<std::string> keys;
    for (const auto evdev : freedesktop::evdevCodesOf(combination.keyCode)) {
        keys.push_back(modifiers + std::to_string(evdev + freedesktop::xkbKeyCodeOffset));
    }
    return keys;
}

std::string commandOf(const platform::KeyCombination& combination) {
    return std::string{commandPrefix} + std::to_string(combination.keyCode) + ' ' +
           std::to_string(combination.modifierFlags);
}

std::optional<platform::KeyCombination> combinationOf(std::string_view command) {
    if (!command.starts_with(commandPrefix)) {
        return std::nullopt;
    }
    command.remove_prefix(commandPrefix.size());
    const auto keyCode = takeNumber<std::uint16_t>(command);
    const auto flags = takeNumber<std::uint64_t>(command);
    if (!keyCode || !flags) {
        return std::nullopt;
    }
    return platform::KeyCombination{.keyCode = *keyCode, .modifierFlags = *flags};
}

} // namespace hollowfernpike::sway
