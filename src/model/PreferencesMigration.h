#pragma once

#include "platform/UserDefaults.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Carries the user's settings over from a domain that an earlier build wrote. Runs once per user:
/// it leaves a marker in the target, even if it found nothing. Main thread only.
namespace hollowfernpike::PreferencesMigration {

/// Takes the first domain of `previous` that has settings worth keeping, copies those for which
/// `into` has no value, and returns the domain's name; nothing if there is no such domain, or if
/// this has run before. Settings that desktops write by themselves, such as window positions, are
/// not copied. The old domain stays as it is.
std::optional<std::string> run(platform::UserDefaults& into,
                               std::span<const std::string_view> previous);

} // namespace hollowfernpike::PreferencesMigration
