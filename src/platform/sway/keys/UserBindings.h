#pragma once

#include "platform/freedesktop/keyboard/Modifiers.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace hollowfernpike::sway {

/// A combination that the user's configuration of sway binds in the default mode.
struct UserBinding {
    freedesktop::ModifierState modifiers = 0;
    std::variant<std::uint32_t, std::string> key; ///< an XKB key code, or the name of a key symbol

    bool operator==(const UserBinding&) const = default;
};

struct ConfigurationFile {
    std::filesystem::path path;
    std::string text;
};

/// The files that a pattern after "include" names in a file of that folder.
using IncludedFiles = std::function<std::vector<ConfigurationFile>(
    const std::string& pattern, const std::filesystem::path& folder)>;

/// The bindings in a configuration of sway (sway(5)): the lines "bindsym" and "bindcode", also in
/// blocks and included files, with variables replaced, without those that "unbindsym" and
/// "unbindcode" take back. Where in doubt, a binding counts.
std::vector<UserBinding> userBindings(const ConfigurationFile& configuration,
                                      const IncludedFiles& includedFiles);

/// What "Mod4+Shift+x" means in a line of that kind. Absent if it is no combination of one key.
std::optional<UserBinding> bindingOfKeys(const std::string& keys, bool isCode);

} // namespace hollowfernpike::sway
