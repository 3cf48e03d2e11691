#pragma once

#include "platform/UserDefaults.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Carries the user's settings over from a domain that an earlier build wrote. Runs once for a
/// user: a marker in the target says so, whatever was found. Main thread only.
namespace hollowfernpike::PreferencesMigration {

/// Copies from the first of the domains `previous` that holds anything worth keeping what `into`
/// has no value for, and returns the domain's name; nothing if there is none, or if this has run
/// before. What desktops write of their own accord, such as where windows were, is left behind; the
/// old domain stays as it is.
std::optional<std::string> run(platform::UserDefaults& into,
                               std::span<const std::string_view> previous);

} // namespace hollowfernpike::PreferencesMigration
