#pragma once

#include "platform/freedesktop/launching/Spawn.h"

#include <string>

namespace hollowfernpike::freedesktop {

struct DesktopEntry;

/// Starts the program of an entry: its command line without files, in its working directory (else
/// the home directory), in a terminal if it wants one, with the user's environment less what
/// concerns only our own start. `startupIdentifier`, if not empty, is handed over as start-up id
/// and activation token. The entry's path is in the new process's environment, where ProcessFacts
/// finds it. Throws platform::LocalizedError.
StartedProcess launchProgram(const DesktopEntry& entry, const std::string& startupIdentifier);

} // namespace hollowfernpike::freedesktop
