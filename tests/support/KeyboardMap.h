#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <xkbcommon/xkbcommon.h>

namespace hollowfernpike::test {

/// What the keys of a keyboard write, in XKB's terms: layouts ("de", "us,ru") and options
/// ("ctrl:nocaps"), both separated by commas.
struct KeyboardLayout {
    std::string layouts = "us";
    std::string options = {};
};

/// What the keys mean under a layout, and which modifiers are in force by now.
class KeyboardMap {
public:
    /// Throws std::runtime_error if there is no such layout.
    explicit KeyboardMap(const KeyboardLayout& layout);

    /// The key's number, which is 8 more than the kernel's; 0 if the map has no key of that name.
    std::uint32_t keycode(std::string_view keyName) const;

    /// Whether the key has a symbol of its own: not in every layout has it one, and a dead key
    /// waits for the next one.
    bool writes(std::string_view keyName) const;

    /// The map as compositors hand it to their clients.
    std::string text() const;

    /// The name of a key of keyboards that writes something else in a map in that form, which may
    /// have further layouts; empty if there is none.
    std::string differenceFrom(const std::string& text) const;

    void update(std::uint32_t keycode, bool isDown);
    void lockGroup(std::uint32_t group);

    std::uint32_t modifiers(xkb_state_component kind) const;
    std::uint32_t group() const;

private:
    std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context_;
    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap_;
    std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> state_;
};

} // namespace hollowfernpike::test
