#pragma once

#include <optional>
#include <string>

namespace hollowfernpike {

/// Starts the program anew in the place of this process, which keeps its number, and tells the new
/// run `state`. Returns only if it fails.
void restartProgram(const std::string& program, const std::string& state);

/// What the run before this one told when it restarted the program; absent if this is an ordinary
/// start. To be called once, before there is a second thread.
std::optional<std::string> stateBeforeRestart();

} // namespace hollowfernpike
