#include "platform/freedesktop/keyboard/Modifiers.h"

#include <limits>
namespace hollowfernpike::freedesktop {

using namespace platform::event_flags;

std::uint64_t Modifiers::flags(ModifierState state) const {
    std::uint64_t result = 0;
    const auto add = [&](unsigned mask, std::uint64_t flag) {
        if ((state & mask) != 0) {
            result |= flag;
        }
    };
    add(real_modifiers::lock, capsLock);
    if (isPlain(state)) {
        add(real_modifiers::shift, shift);
        add(real_modifiers::control, control);
        add(option, platform::event_flags::option);
        add(command, platform::event_flags::command);
    }
    return result;
}

bool Modifiers::isPlain(ModifierState state) const {
    const unsigned known = real_modifiers::shift | real_modifiers::control | real_modifiers::lock |
                           option | command | numLock | scrollLock;
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

} // namespace hollowfernpike::freedesktop
