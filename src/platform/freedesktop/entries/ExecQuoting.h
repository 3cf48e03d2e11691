#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace hollowfernpike::freedesktop {

/// The Exec line that starts `program`, an absolute path, without arguments: quoted by the Desktop
/// Entry Specification, not yet escaped as a text of the file. Absent if no line can say that path:
/// it is not UTF-8, or has both "%" and "=" in it.
std::optional<std::string> execLineFor(const std::filesystem::path& program);

} // namespace hollowfernpike::freedesktop
