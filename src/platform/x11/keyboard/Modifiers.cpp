#include "platform/x11/keyboard/Modifiers.h"

#include <limits>

#include <xcb/xproto.h>

namespace hollowfernpike::x11 {

using namespace platform::event_flags;

std::uint64_t Modifiers::flags(ModifierState state) const {
    std::uint64_t result = 0;
    const auto add = [&](unsigned mask, std::uint64_t flag) {
        if ((state & mask) != 0) {
            result |= flag;
        }
    };
    add(XCB_MOD_MASK_LOCK, capsLock);
    if (isPlain(state)) {
        add(XCB_MOD_MASK_SHIFT, shift);
        add(XCB_MOD_MASK_CONTROL, control);
        add(option, platform::event_flags::option);
        add(command, platform::event_flags::command);
    }
    return result;
}

bool Modifiers::isPlain(ModifierState state) const {
    const unsigned known = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK | option |
                           command | numLock | scrollLock;
    return (state & ~known) == 0;
}

std::vector<ModifierState> Modifiers::statesFor(std::uint64_t modifierFlags) const {
    std::vector<ModifierState> states;
    for (unsigned bits = 0; bits <= std::numeric_limits<ModifierState>::max(); ++bits) {
        const auto state = static_cast<ModifierState>(bits);
        if (isPlain(state) && (flags(state) & shortcutModifiers) == modifierFlags) {
            states.push_back(state);
        }
    }
    return states;
}

} // namespace hollowfernpike::x11
