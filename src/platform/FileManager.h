#pragma once

#include "platform/Interface.h"
#include "platform/LocalizedError.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace hollowfernpike::platform {

/// A file operation that failed: which path, and what the system said of it.
class FileError : public LocalizedError {
public:
    FileError(std::filesystem::path path, std::error_code code, std::string japanese,
              std::string english)
        : LocalizedError(std::move(japanese), std::move(english)), path_(std::move(path)),
          code_(code) {}

    const std::filesystem::path& path() const noexcept { return path_; }
    const std::error_code& code() const noexcept { return code_; }

private:
    std::filesystem::path path_;
    std::error_code code_;
};

/// The user's files. Every function that fails throws `FileError`. Any thread.
class FileManager : public Interface {
public:
    /// Where applications keep the user's data, best first; empty when nothing is known.
    virtual std::vector<std::filesystem::path> applicationSupportDirectories() = 0;

    /// Makes a directory and its missing parents, private to the user. One that exists is no error.
    virtual void createDirectory(const std::filesystem::path& directory) = 0;

    /// Whether something is there; false for a broken symbolic link. Never throws.
    virtual bool fileExists(const std::filesystem::path& file) = 0;

    /// The whole file.
    virtual std::string readFile(const std::filesystem::path& file) = 0;

    /// Replaces the file's contents in one step: after a crash or a power cut at any moment the
    /// file is the old or the new one, whole. A symbolic link stays a link and its target is
    /// replaced; the mode of an existing file is kept, a new file is private to the user. On
    /// failure the old file stands and nothing is left beside it.
    virtual void writeFileAtomically(const std::filesystem::path& file, std::string_view data) = 0;
};

} // namespace hollowfernpike::platform
