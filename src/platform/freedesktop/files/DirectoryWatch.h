#pragma once

#include "platform/posix/Descriptor.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Remembers whether files changed in some directories. The kernel keeps the record (inotify): a
/// change does not wake this process unless it waits for it, and asking is one system call.
class DirectoryWatch {
public:
    DirectoryWatch();

    /// Watches the files of `directory` whose names end like this, and its subdirectories, not
    /// those further below. If there is no such directory, watches for its appearance.
    void add(const std::filesystem::path& directory, const std::string& ending = ".desktop");

    /// Whether anything may have changed since its directory was added. Stays true once it was;
    /// always true where the kernel would not watch.
    bool hasChanged();

    /// Whether the kernel would not watch, and hasChanged() is therefore always true.
    bool isBlind() const { return isBlind_; }

    /// To wait for: can be read when something has happened since hasChanged() was last false, of
    /// concern or not. Negative if there is none.
    int descriptor() const { return queue_.get(); }

private:
    struct Interest {
        std::vector<std::string> endings; ///< of files; if there are any, of all subdirectories
        std::vector<std::string> names;
    };

    Interest* watch(const std::filesystem::path& directory);
    bool concerns(int number, const char* name, unsigned mask) const;

    posix::Descriptor queue_;
    bool isBlind_;
    bool hasChanged_ = isBlind_;
    std::map<int, Interest> interests_; ///< by watch
};

} // namespace hollowfernpike::freedesktop
