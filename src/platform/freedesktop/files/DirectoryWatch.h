#pragma once

#include "platform/freedesktop/files/Descriptor.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Remembers whether entry files changed in some directories. The kernel keeps the record
/// (inotify): a change does not wake this process, and asking is one system call.
class DirectoryWatch {
public:
    DirectoryWatch();

    /// Watches the files and subdirectories of `directory`, not those further below. If there is no
    /// such directory, watches for its appearance.
    void add(const std::filesystem::path& directory);

    /// Whether anything may have changed since its directory was added. Stays true once it was;
    /// always true where the kernel would not watch.
    bool hasChanged();

    /// Whether the kernel would not watch, and hasChanged() is therefore always true.
    bool isBlind() const { return isBlind_; }

private:
    struct Interest {
        bool inEntries = false;
        std::vector<std::string> inNames;
    };

    Interest* watch(const std::filesystem::path& directory);
    bool concerns(int number, const char* name, unsigned mask) const;

    Descriptor queue_;
    bool isBlind_;
    bool hasChanged_ = isBlind_;
    std::map<int, Interest> interests_; ///< by watch
};

} // namespace hollowfernpike::freedesktop
