#pragma once

#include <string>

namespace hollowfernpike::freedesktop {

/// The file that `program` would run: itself if it is an absolute path, looked up from `directory`
/// if it is a relative one, else in PATH. Empty if there is none or it is not executable.
std::string findProgram(const std::string& program, const std::string& directory = {});

/// The same file free of symbolic links; empty if it does not exist.
std::string resolvedFile(const std::string& path);

} // namespace hollowfernpike::freedesktop
