#pragma once

#include <string>
#include <string_view>

/// The texts that embed a value; every other text is a pair of literals where it is used.
namespace hollowfernpike::L10n {

/// What a shortcut does, for desktops that list it among theirs.
std::string purpose(std::string_view appName);

} // namespace hollowfernpike::L10n

namespace hollowfernpike::L10n::Main {

/// The question before a shortcut is deleted. The name is inserted as it is.
std::string deleteConfirmTitle(std::string_view appName);

/// The text under that question: the shortcut's keys.
std::string deleteConfirmInfo(std::string_view displayString);

} // namespace hollowfernpike::L10n::Main
