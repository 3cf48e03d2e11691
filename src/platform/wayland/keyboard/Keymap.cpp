#include "platform/wayland/keyboard/Keymap.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include <xkbcommon/xkbcommon.h>

namespace hollowfernpike::wayland {

namespace {

using Context = std::unique_ptr<xkb_context, decltype(&xkb_context_unref)>;

bool hasSymbol(xkb_keymap* keymap, std::uint32_t keyCode, xkb_layout_index_t layout,
               xkb_level_index_t level, xkb_keysym_t symbol) {
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, keyCode, layout, level, &symbols);
    return std::ranges::count(std::span(symbols, static_cast<std::size_t>(std::max(count, 0))),
                              symbol) > 0;
}

} // namespace

std::unique_ptr<Keymap> Keymap::parse(const std::string& text) {
    const Context context{xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), &xkb_context_unref};
    auto* const keymap = xkb_keymap_new_from_string(
        context.get(), text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS);
    return keymap == nullptr ? nullptr : std::unique_ptr<Keymap>(new Keymap(keymap));
}

Keymap::~Keymap() {
    xkb_keymap_unref(keymap_);
}

bool Keymap::gives(std::uint32_t keyCode, freedesktop::ModifierState held,
                   const std::string& symbol, freedesktop::ModifierState wanted) const {
    const auto keysym = xkb_keysym_from_name(symbol.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    if (keysym == XKB_KEY_NoSymbol) {
        return false;
    }
    const auto shift = freedesktop::real_modifiers::shift;
    const bool followsNumLock = symbol.starts_with("KP_");
    const auto layouts = xkb_keymap_num_layouts_for_key(keymap_, keyCode);
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        if (held == wanted &&
            (hasSymbol(keymap_, keyCode, layout, 0, keysym) ||
             (followsNumLock && hasSymbol(keymap_, keyCode, layout, 1, keysym)))) {
            return true;
        }
        if ((held & shift) != 0 && (held & ~shift) == (wanted & ~shift) &&
            hasSymbol(keymap_, keyCode, layout, 1, keysym)) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> Keymap::symbolsOf(std::uint32_t keyCode) const {
    constexpr std::size_t longestName = 64;
    std::vector<std::string> names;
    for (const xkb_level_index_t level : {0U, 1U}) {
        const xkb_keysym_t* symbols = nullptr;
        std::array<char, longestName> name{};
        if (xkb_keymap_key_get_syms_by_level(keymap_, keyCode, 0, level, &symbols) == 1 &&
            xkb_keysym_get_name(symbols[0], name.data(), name.size()) > 0 &&
            (level == 0 || std::string_view(name.data()).starts_with("KP_"))) {
            names.emplace_back(name.data());
        }
    }
    return names;
}

} // namespace hollowfernpike::wayland
