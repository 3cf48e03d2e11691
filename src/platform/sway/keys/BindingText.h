#pragma once

#include "platform/EventTap.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::sway {

/// A combination in sway's words, such as "Ctrl+Mod1+45": one text for each key that has its
/// virtual key code. Empty if no key can have it.
std::vector<std::string> keysOf(const platform::KeyCombination& combination);

/// The command that we bind to a combination: one that does nothing and names us and the
/// combination.
std::string commandOf(const platform::KeyCombination& combination);

/// The combination that such a command names; absent for commands that are not ours.
std::optional<platform::KeyCombination> combinationOf(std::string_view command);

} // namespace hollowfernpike::sway
