#pragma once

#include "platform/LoginItem.h"

#include <filesystem>
#include <string>

namespace hollowfernpike::freedesktop {

enum class Autostart { on, off };

/// The text of the autostart entry for our program, an absolute path. Throws
/// platform::LocalizedError if no entry can name that path.
std::string autostartEntry(const std::filesystem::path& program, Autostart state);

/// How this desktop treats the autostart entry at `path`: `notFound` if it starts nothing because
/// it cannot be read or its program is missing.
platform::LoginItemStatus statusOfAutostartEntry(const std::string& path);

} // namespace hollowfernpike::freedesktop
