#pragma once

#include "platform/freedesktop/entries/DesktopEntry.h"

#include <optional>
#include <string_view>

namespace hollowfernpike::test {

/// Reads the text as the file of a desktop entry, in every way in which entry files are read.
/// Absent if it is none.
std::optional<freedesktop::DesktopEntry> readEntry(std::string_view text);

} // namespace hollowfernpike::test
