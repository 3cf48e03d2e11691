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

/// $XDG_CACHE_HOME, else .cache in the home directory.
std::optional<std::filesystem::path> cacheHome();

/// What all users share, the most important directory first: $XDG_DATA_DIRS and $XDG_CONFIG_DIRS
/// without relative paths, or the standard's defaults if nothing is left.
std::vector<std::filesystem::path> sharedDataDirectories();
std::vector<std::filesystem::path> sharedConfigDirectories();

/// All directories for data, the user's own before the shared ones.
std::vector<std::filesystem::path> dataDirectories();

/// Whether one of them has this file, named by its path below them.
bool hasDataFile(const std::filesystem::path& file);

/// $XDG_RUNTIME_DIR; there is no standard place to fall back on.
std::optional<std::filesystem::path> runtimeDirectory();

/// $TMPDIR, else /tmp. May be shared by all users; files there do not last.
std::filesystem::path temporaryDirectory();

/// Sets the variables so that the libraries of this process find the same directories: by
/// themselves, some accept relative paths or do not ask the user database. Programs that we launch
/// still get the user's variables. To be called before there is a second thread.
void settleBaseDirectories();

} // namespace hollowfernpike::freedesktop
