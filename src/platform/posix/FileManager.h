#pragma once

#include "platform/FileManager.h"

#include <cstddef>

namespace hollowfernpike::posix {

/// The user's files by POSIX; a desktop knows where applications keep theirs. Reads regular files
/// alone, and up to a size, so that a pipe or a device cannot hold up or flood the process.
class FileManager : public platform::FileManager {
public:
    /// `largestFile` is in bytes.
    explicit FileManager(std::size_t largestFile = std::size_t{1} << 24)
        : largestFile_(largestFile) {}

    void createDirectory(const std::filesystem::path& directory) override;
    bool fileExists(const std::filesystem::path& file) override;
    std::string readFile(const std::filesystem::path& file) override;
    void writeFileAtomically(const std::filesystem::path& file, std::string_view data) override;

private:
    std::size_t largestFile_;
};

} // namespace hollowfernpike::posix
