#pragma once

#include "platform/freedesktop/files/Descriptor.h"

#include <filesystem>
#include <string>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

/// A directory into which nobody but the user can look or write, held open: whatever is done in it
/// by its descriptor happens in the directory that was checked.
class PrivateDirectory {
public:
    /// Where the user's programs meet while they run: $XDG_RUNTIME_DIR, if it is there and private,
    /// else a directory of our own below the temporary directory, made if it is missing. Throws
    /// platform::FileError if that one is somebody else's, open to others or cannot be made.
    static PrivateDirectory forRuntime();

    /// Opens one that exists. Throws platform::FileError if it is not there, a link or not private
    /// to `user`.
    explicit PrivateDirectory(std::filesystem::path path, uid_t user = ::geteuid());

    const std::filesystem::path& path() const { return path_; }
    int descriptor() const { return descriptor_.get(); }

private:
    std::filesystem::path path_;
    Descriptor descriptor_;
};

} // namespace hollowfernpike::freedesktop
