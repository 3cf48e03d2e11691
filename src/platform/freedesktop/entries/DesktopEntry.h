#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

/// Tells whether a file is still the one that was read, as far as one stat can tell.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0; ///< nanoseconds since the epoch
    std::int64_t changed = 0;  ///< of the inode, likewise

    bool operator==(const FileStamp&) const = default;
    bool isSameFile(const FileStamp& other) const {
        return device == other.device && inode == other.inode;
    }
};

FileStamp stampFrom(const struct stat& status);

/// Like ::stat, but fails with ENOENT for a path with a zero byte, instead of cutting it there.
int statusAt(const std::string& path, struct stat& status);

/// Absent if there is nothing at `path`, or we may not look at it.
std::optional<FileStamp> stampOf(const std::string& path);

/// An application, as its entry file describes it (Desktop Entry Specification 1.5). Texts are as
/// the file has them, already unescaped; a key that the file lacks is empty.
struct DesktopEntry {
    std::string path;
    FileStamp stamp;
    std::string identifier;  ///< desktop-file id without ".desktop"; of others than installed ones
                             ///< the file name
    std::string name;        ///< file name without ".desktop"
    std::string displayName; ///< Name, localized
    std::string windowClass; ///< StartupWMClass
    std::vector<std::string> words; ///< of the command line, field codes as they are; none if the
                                    ///< bus alone opens the application
    std::string programFile;        ///< a process of this file runs the application; symbolic links
                                    ///< resolved; empty if the command line does not tell
    std::string workingDirectory;
    std::string icon;
    bool terminal = false;
    bool dbusActivatable = false;
    bool startupNotify = false;
    bool isInstalled = true; ///< in an applications directory
    bool hidden = false;     ///< removed by the user: not an application
    bool noDisplay = false;  ///< not offered in menus, but an application like any other
};

/// The file name without ".desktop".
std::string entryName(std::string_view path);

/// Reads the entry at `path`, installed or not, and leaves `identifier` empty. Throws
/// platform::LocalizedError if there is no file, it cannot be read, it does not describe an
/// application, or the program that it names (Exec, TryExec) is missing. A hidden entry is read
/// like any other.
DesktopEntry readDesktopEntry(const std::string& path);

} // namespace hollowfernpike::freedesktop
