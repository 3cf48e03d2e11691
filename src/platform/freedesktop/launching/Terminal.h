#pragma once

#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// The first words of a command that runs another one in a terminal window: the user's choice where
/// the desktop knows it, else the first terminal that is installed. Empty if there is none.
std::vector<std::string> terminalPrefix();

} // namespace hollowfernpike::freedesktop
