#include "support/KeyboardMap.h"

#include <cstdlib>
#include <stdexcept>
#include <vector>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace hollowfernpike::test {

namespace {

/// What the key writes at all levels of a layout.
std::vector<xkb_keysym_t> symbolsOf(xkb_keymap& keymap, xkb_keycode_t key,
                                    xkb_layout_index_t layout) {
    std::vector<xkb_keysym_t> symbols;
    const auto levels = xkb_keymap_num_levels_for_key(&keymap, key, layout);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
        const xkb_keysym_t* some = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(&keymap, key, layout, level, &some);
        symbols.push_back(count > 0 ? *some : XKB_KEY_NoSymbol);
    }
    return symbols;
}

} // namespace

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

bool KeyboardMap::writes(std::string_view keyName) const {
    const xkb_keysym_t* symbols = nullptr;
    const int count =
        xkb_keymap_key_get_syms_by_level(keymap_.get(), keycode(keyName), 0, 0, &symbols);
    return count > 0 &&
           (*symbols < XKB_KEY_dead_grave || *symbols > XKB_KEY_dead_longsolidusoverlay);
}

std::string KeyboardMap::text() const {
    const std::unique_ptr<char, decltype(&std::free)> text(
        xkb_keymap_get_as_string(keymap_.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
    return text.get();
}

std::string KeyboardMap::differenceFrom(const std::string& text) const {
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> other(
        xkb_keymap_new_from_string(context_.get(), text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                   XKB_KEYMAP_COMPILE_NO_FLAGS),
        &xkb_keymap_unref);
    if (!other) {
        return "all";
    }
    constexpr xkb_keycode_t last = 255; // compositors differ in what they write of later ones
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap_.get()); ++layout) {
        for (auto key = xkb_keymap_min_keycode(keymap_.get()); key <= last; ++key) {
            const auto layouts = xkb_keymap_num_layouts_for_key(keymap_.get(), key);
            if (layout < layouts &&
                symbolsOf(*keymap_, key, layout) != symbolsOf(*other, key, layout)) {
                const char* const name = xkb_keymap_key_get_name(keymap_.get(), key);
                return name == nullptr ? "one without a name" : name;
            }
        }
    }
    return {};
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
