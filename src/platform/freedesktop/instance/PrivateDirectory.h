#pragma once

#include "platform/posix/Descriptor.h"

#include <filesystem>
#include <string>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

/// A directory that only the user can read or write. It is held open: what is done through its
/// descriptor happens in the directory that was checked, even if its path has been replaced.
class PrivateDirectory {
public:
    /// The directory for files of running programs: $XDG_RUNTIME_DIR, if it exists and is private,
    /// else a directory of our own below the temporary directory, made if it is missing; if
    /// somebody else has taken its name, one in the user's cache. Throws platform::FileError if our
    /// own one is open to others or cannot be made.
    static PrivateDirectory forRuntime();

    /// Opens an existing directory. Throws platform::FileError if it is missing, a link or not
    /// private to `user`.
    explicit PrivateDirectory(std::filesystem::path path, uid_t user = ::geteuid());

    const std::filesystem::path& path() const { return path_; }
    int descriptor() const { return descriptor_.get(); }

private:
    std::filesystem::path path_;
    posix::Descriptor descriptor_;
};

} // namespace hollowfernpike::freedesktop
