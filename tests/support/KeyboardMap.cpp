#include "support/KeyboardMap.h"

#include <cstdlib>
#include <stdexcept>

namespace hollowfernpike::test {

KeyboardMap::KeyboardMap(const KeyboardLayout& layout)
    : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref),
      keymap_(nullptr, &xkb_keymap_unref), state_(nullptr, &xkb_state_unref) {
    const xkb_rule_names names{.rules = "evdev",
                               .model = "pc105",
                               .layout = layout.layouts.c_str(),
                               .variant = "",
                               .options = layout.options.c_str()};
    keymap_.reset(xkb_keymap_new_from_names(context_.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap_) {
        throw std::runtime_error("no keyboard layout " + layout.layouts);
    }
    state_.reset(xkb_state_new(keymap_.get()));
}

std::uint32_t KeyboardMap::keycode(std::string_view keyName) const {
    const auto key = xkb_keymap_key_by_name(keymap_.get(), std::string{keyName}.c_str());
    return key == XKB_KEYCODE_INVALID ? 0 : key;
}

std::string KeyboardMap::text() const {
    const std::unique_ptr<char, decltype(&std::free)> text(
        xkb_keymap_get_as_string(keymap_.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
    return text.get();
}

void KeyboardMap::update(std::uint32_t keycode, bool isDown) {
    xkb_state_update_key(state_.get(), keycode, isDown ? XKB_KEY_DOWN : XKB_KEY_UP);
}

void KeyboardMap::lockGroup(std::uint32_t group) {
    xkb_state_update_mask(state_.get(), modifiers(XKB_STATE_MODS_DEPRESSED),
                          modifiers(XKB_STATE_MODS_LATCHED), modifiers(XKB_STATE_MODS_LOCKED), 0, 0,
                          group);
}

std::uint32_t KeyboardMap::modifiers(xkb_state_component kind) const {
    return xkb_state_serialize_mods(state_.get(), kind);
}

std::uint32_t KeyboardMap::group() const {
    return xkb_state_serialize_layout(state_.get(), XKB_STATE_LAYOUT_EFFECTIVE);
}

} // namespace hollowfernpike::test
