#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/keyboard/Keymap.h"

#include <span>
#include <string>
#include <string_view>

namespace hollowfernpike::wayland {

/// What the configuration of a compositor says to have these commands run by key combinations.
/// `compositor` is its process's name; of `session`, the names that the session gives itself,
/// separated by colons, one is taken if that one is not known. If none is, or without a keyboard's
/// map, the lines are the commands alone.
platform::ManualBindings bindingLines(std::string_view compositor, std::string_view session,
                                      const Keymap* keymap,
                                      std::span<const platform::BoundCommand> commands);

} // namespace hollowfernpike::wayland
