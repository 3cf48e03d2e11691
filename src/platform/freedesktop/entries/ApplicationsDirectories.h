#pragma once

#include "platform/freedesktop/entries/DesktopEntry.h"

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

class DirectoryWatch;

/// Where entries of installed applications lie, the most important directory first: "applications"
/// in $XDG_DATA_HOME and in each of $XDG_DATA_DIRS. Read from the environment anew each time; they
/// need not exist.
std::vector<std::filesystem::path> applicationsDirectories();

/// An entry file in an applications directory.
struct InstalledFile {
    std::string path;
    std::string identifier; ///< its path below the directory, "-" for "/", without ".desktop"
    FileStamp stamp;
};

/// All entry files below the directories, in the order of the directories. Of several with one
/// identifier only the first is listed, even if it is hidden or invalid. Every directory, missing
/// ones included, is added to `watch` before it is read.
std::vector<InstalledFile> installedFiles(const std::vector<std::filesystem::path>& directories,
                                          DirectoryWatch& watch);

} // namespace hollowfernpike::freedesktop
