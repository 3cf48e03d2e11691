#pragma once

#include "platform/EventTap.h"
#include "platform/LocalizedError.h"

#include <optional>
#include <span>
#include <string>

namespace hollowfernpike {

/// What the program was started for. Launchers use it to reach the running program; people have the
/// menu and the windows.
struct CommandLine {
    enum class Purpose { run, help, version, misuse };

    Purpose purpose = Purpose::run;
    std::string action; ///< of the delegate; empty for a plain start
    std::optional<platform::KeyCombination> press = std::nullopt; ///< to be carried out
    std::optional<platform::LocalizedError> fault = std::nullopt; ///< of a misuse, if it is known
};

/// `arguments` without the program's own name.
CommandLine parseCommandLine(std::span<const char* const> arguments);

/// How to start the program.
std::string usage();

} // namespace hollowfernpike
