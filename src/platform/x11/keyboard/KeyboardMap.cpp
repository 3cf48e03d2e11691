#include "platform/x11/keyboard/KeyboardMap.h"

#include "platform/freedesktop/keyboard/KeyNames.h"

#include <string_view>

namespace hollowfernpike::x11 {

namespace {

using VirtualModifier = KeyboardDescription::VirtualModifier;

VirtualModifier find(const KeyboardDescription& description, std::string_view name) {
    const auto found = description.virtualModifiers.find(name);
    return found == description.virtualModifiers.end() ? VirtualModifier{} : found->second;
}

freedesktop::ModifierState firstPlaced(const KeyboardDescription& description,
                                       std::string_view name, std::string_view substitute) {
    const auto place = find(description, name).modifiers;
    return place != 0 ? place : find(description, substitute).modifiers;
}

freedesktop::Modifiers findModifiers(const KeyboardDescription& description) {
    return {
        .option = firstPlaced(description, "Alt", "Meta"),
        .command = firstPlaced(description, "Super", "Hyper"),
        .numLock = find(description, "NumLock").modifiers,
        .scrollLock = find(description, "ScrollLock").modifiers,
    };
}

/// Whether the key only changes what others mean. Num Lock and Scroll Lock count as ordinary keys.
bool isModifier(const KeyboardDescription& description, const KeyboardDescription::Key& key) {
    const auto num = find(description, "NumLock");
    const auto scroll = find(description, "ScrollLock");
    const auto locks = num.modifiers | scroll.modifiers;
    return ((key.modifiers | key.actionModifiers) & ~locks) != 0 ||
           (key.virtualModifiers & ~(num.bit | scroll.bit)) != 0 || key.changesGroup;
}

template <class Lookup>
std::optional<std::uint16_t> firstFound(const KeyboardDescription& description,
                                        const std::string& name, Lookup lookup) {
    auto code = lookup(name);
    const auto [begin, end] = description.aliases.equal_range(name);
    for (auto alias = begin; !code && alias != end; ++alias) {
        code = lookup(alias->second);
    }
    return code;
}

std::uint16_t keyCode(const KeyboardDescription& description, xcb_keycode_t key) {
    const auto& name = description.keys.at(key).name;
    if (const auto code = firstFound(description, name, freedesktop::virtualKeyCode)) {
        return *code;
    }
    const auto evdev = firstFound(description, name, freedesktop::evdevCode);
    return static_cast<std::uint16_t>(freedesktop::firstUnnumberedKeyCode +
                                      evdev.value_or(key - 8));
}

} // namespace

KeyboardMap::KeyboardMap(const KeyboardDescription& description)
    : modifiers_(findModifiers(description)) {
    for (unsigned index = description.firstKey; index <= description.lastKey; ++index) {
        const auto key = static_cast<xcb_keycode_t>(index);
        const auto& described = description.keys.at(key);
        if (!isModifier(description, described)) {
            codes_.at(key) = keyCode(description, key);
        } else if ((described.modifiers & modifiers_.command) != 0) {
            superKeys_.push_back(key);
        }
    }
}

std::optional<platform::KeyEvent> KeyboardMap::event(const KeyState& press) const {
    const auto code = codes_.at(press.key);
    if (!code) {
        return std::nullopt;
    }
    return platform::KeyEvent{.keyCode = *code,
                              .flags = platform::event_flags::nonCoalesced |
                                       freedesktop::keyFlags(*code) |
                                       modifiers_.flags(press.modifiers)};
}

std::optional<platform::KeyCombination> KeyboardMap::combination(const KeyState& press) const {
    const auto code = codes_.at(press.key);
    if (!code || !modifiers_.isPlain(press.modifiers)) {
        return std::nullopt;
    }
    return platform::KeyCombination{.keyCode = *code,
                                    .modifierFlags = modifiers_.flags(press.modifiers) &
                                                     freedesktop::shortcutModifiers};
}

std::vector<KeyState> KeyboardMap::presses(const platform::KeyCombination& combination) const {
    const auto states = modifiers_.statesFor(combination.modifierFlags);
    std::vector<KeyState> result;
    for (std::size_t key = 0; key < codes_.size(); ++key) {
        if (codes_.at(key) == combination.keyCode) {
            for (const auto state : states) {
                result.push_back({static_cast<xcb_keycode_t>(key), state});
            }
        }
    }
    return result;
}

} // namespace hollowfernpike::x11
