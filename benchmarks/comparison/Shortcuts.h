#pragma once

#include "desktop/Combination.h"

#include <filesystem>
#include <string>

namespace hollowfernpike::bench {

/// The combination that every contestant waits for.
inline const test::Combination combination{7, test::control | test::option};

/// Another combination, which launches nothing. It is struck between two presses of `combination`,
/// because in quick succession those count as one held key, for which we launch only once.
inline const test::Combination interlude{8, test::control | test::option};

/// An application as the desktop has it installed.
struct InstalledApplication {
    std::filesystem::path entry;
    std::string name; ///< also its identifier
};

/// Writes an entry for a program into the folder of entries; `name` is also the class of its
/// windows.
InstalledApplication install(const std::filesystem::path& applications, const std::string& name,
                             const std::string& exec);

/// Our file in the user's folder for data.
std::filesystem::path shortcutsFile(const std::filesystem::path& dataHome);

/// What stands in that file: `combination` for the application, and the interlude.
std::string shortcutList(const InstalledApplication& application);

} // namespace hollowfernpike::bench
