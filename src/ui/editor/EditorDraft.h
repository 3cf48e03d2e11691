#pragma once

#include "model/UUID.h"

#include <cstdint>
#include <optional>
#include <string>

namespace hollowfernpike {

/// What the user has entered into an editor so far.
struct EditorDraft {
    std::optional<UUID> editing; ///< the shortcut that is changed; absent for a new one
    std::optional<std::string> appPath;
    std::optional<std::uint16_t> keyCode;
    std::optional<std::uint64_t> modifierFlags; ///< with the key code alone
};

} // namespace hollowfernpike
