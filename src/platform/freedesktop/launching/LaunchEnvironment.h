#pragma once

#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

inline constexpr auto launchedFileVariable = "GIO_LAUNCHED_DESKTOP_FILE";
inline constexpr auto launchedNumberVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID";

/// The environment for a program that we start: the user's, without what tells about our own start
/// and our own service unit, with what tells about the program's.
std::vector<std::string> launchEnvironment(const std::string& entryPath,
                                           const std::string& startupIdentifier);

} // namespace hollowfernpike::freedesktop
