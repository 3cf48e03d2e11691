#pragma once

#include "platform/FileManager.h"

#include <cstddef>

namespace hollowfernpike::freedesktop {

/// The user's files by POSIX; the user's data below the XDG data home. Reads regular files alone,
/// and up to a size, so that a pipe or a device cannot hold up or flood the process.
class FileManager final : public platform::FileManager {
public:
    /// `largestFile` is in bytes.
    explicit FileManager(std::size_t largestFile = std::size_t{1} << 24)
        : largestFile_(largestFile) {}

    std::vector<std::filesystem::path> applicationSupportDirectories() override;
    void createDirectory(const std::filesystem::path& directory) override;
    bool fileExists(const std::filesystem::path& file) override;
    std::string readFile(const std::filesystem::path& file) override;
    void writeFileAtomically(const std::filesystem::path& file, std::string_view data) override;

private:
    std::size_t largestFile_;
};

} // namespace hollowfernpike::freedesktop
