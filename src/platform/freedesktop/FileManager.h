#pragma once

#include "platform/FileManager.h"

namespace hollowfernpike::freedesktop {

/// The user's files by POSIX; the user's data below the XDG data home. Reads files of up to 1 GiB
/// and nothing but regular ones, so that a pipe or a device cannot hold up or flood the process.
class FileManager final : public platform::FileManager {
public:
    std::vector<std::filesystem::path> applicationSupportDirectories() override;
    void createDirectory(const std::filesystem::path& directory) override;
    bool fileExists(const std::filesystem::path& file) override;
    std::string readFile(const std::filesystem::path& file) override;
    void writeFileAtomically(const std::filesystem::path& file, std::string_view data) override;
};

} // namespace hollowfernpike::freedesktop
