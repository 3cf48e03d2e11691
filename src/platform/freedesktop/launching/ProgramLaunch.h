#pragma once

#include "platform/freedesktop/launching/Spawn.h"

#include <string>

namespace hollowfernpike::freedesktop {

struct DesktopEntry;

/// Starts the program of an entry: its command line without files, in its working directory (else
/// the home directory), in a terminal if it wants one, with our environment less what concerns only
/// our own start. `startupIdentifier`, if not empty, is handed over as start-up id and activation
/// token. The new process finds the entry's path and its own number in GIO_LAUNCHED_DESKTOP_FILE
/// and GIO_LAUNCHED_DESKTOP_FILE_PID, so that whoever meets it later knows what it is. Throws
/// platform::LocalizedError.
StartedProcess launchProgram(const DesktopEntry& entry, const std::string& startupIdentifier);

} // namespace hollowfernpike::freedesktop
