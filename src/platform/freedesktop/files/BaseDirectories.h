#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace hollowfernpike::freedesktop {

/// The user's directories by the XDG Base Directory Specification 0.8. Read from the environment
/// anew each time; a variable that is empty or holds a relative path counts as unset. None of them
/// need exist. Safe from any thread as long as none changes the environment.

/// $HOME, else the home that the system's user database names; absent if neither is absolute.
std::optional<std::filesystem::path> homeDirectory();

/// $XDG_DATA_HOME, else .local/share in the home directory.
std::optional<std::filesystem::path> dataHome();

/// $XDG_CONFIG_HOME, else .config in the home directory.
std::optional<std::filesystem::path> configHome();

/// What all users share, the most important directory first: $XDG_DATA_DIRS and $XDG_CONFIG_DIRS,
/// with relative paths left out, else the standard's own if nothing is left.
std::vector<std::filesystem::path> sharedDataDirectories();
std::vector<std::filesystem::path> sharedConfigDirectories();

/// $XDG_RUNTIME_DIR; there is no standard place to fall back on.
std::optional<std::filesystem::path> runtimeDirectory();

/// $TMPDIR, else /tmp: everybody's, and nothing stays there.
std::filesystem::path temporaryDirectory();

/// Makes the libraries of this process find the same directories: they follow the same variables,
/// but some take relative paths as they are, and none asks the user database. What we launch still
/// gets the variables of the user. To be called before there is a second thread.
void settleBaseDirectories();

} // namespace hollowfernpike::freedesktop
