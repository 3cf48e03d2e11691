#pragma once

#include "platform/freedesktop/files/Descriptor.h"

#include <filesystem>

namespace hollowfernpike::freedesktop {

/// A new, empty file for the user alone, removed with the object unless it was given another name.
/// A process that is killed meanwhile leaves it behind, and nobody removes it then: a name does not
/// tell whose a file is. What fails throws std::system_error.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& folder);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    int descriptor() const { return descriptor_.get(); }

    /// Gives the file this name, in place of whatever has it.
    void rename(const std::filesystem::path& target);

private:
    std::filesystem::path path_;
    Descriptor descriptor_;
};

} // namespace hollowfernpike::freedesktop
