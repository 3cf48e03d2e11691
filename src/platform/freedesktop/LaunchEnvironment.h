#pragma once

#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

inline constexpr auto launchedFileVariable = "GIO_LAUNCHED_DESKTOP_FILE";
inline constexpr auto launchedNumberVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID";

/// Tells libdbus whether to abort when it is misused; ours alone, not handed on.
inline constexpr auto libdbusVariable = "DBUS_FATAL_WARNINGS";

/// The environment for a program that we start: ours, without what tells about our own start and
/// our own service unit, with what tells about the program's.
std::vector<std::string> launchEnvironment(const std::string& entryPath,
                                           const std::string& startupIdentifier);

} // namespace hollowfernpike::freedesktop
