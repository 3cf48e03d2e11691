#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include <xkbcommon/xkbcommon.h>

namespace hollowfernpike::test {

using XkbKeymap = std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)>;

/// The keyboard map of these layouts ("us,ru"), as compositors make it.
inline XkbKeymap compiledKeymap(const char* layouts) {
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context{
        xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref};
    const xkb_rule_names names{.rules = "evdev",
                               .model = "pc105",
                               .layout = layouts,
                               .variant = nullptr,
                               .options = nullptr};
    return {xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS),
            &xkb_keymap_unref};
}

/// The same as the text that clients get.
inline std::string keymapText(const char* layouts) {
    const std::unique_ptr<char, decltype(&std::free)> text{
        xkb_keymap_get_as_string(compiledKeymap(layouts).get(), XKB_KEYMAP_FORMAT_TEXT_V1),
        &std::free};
    return text.get();
}

} // namespace hollowfernpike::test
