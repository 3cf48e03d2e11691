#pragma once

#include "platform/freedesktop/keyboard/Modifiers.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace hollowfernpike::sway {

/// A combination that the user's configuration of sway binds in the default mode.
struct UserBinding {
    freedesktop::ModifierState modifiers = 0;
    std::variant<std::uint32_t, std::string> key; ///< an XKB key code, or the name of a key symbol

    bool operator==(const UserBinding&) const = default;
};

/// The texts of the files that a pattern after "include" names.
using IncludedFiles = std::function<std::vector<std::string>(const std::string& pattern)>;

/// The bindings in a configuration of sway (sway(5)): the lines "bindsym" and "bindcode", also in
/// blocks and included files, with variables replaced, without those that "unbindsym" and
/// "unbindcode" take back. What sway would not understand is left out.
std::vector<UserBinding> userBindings(std::string_view configuration,
                                      const IncludedFiles& includedFiles);

} // namespace hollowfernpike::sway
