#pragma once

#include "platform/posix/FileManager.h"

namespace hollowfernpike::macos {

/// Applications keep the user's data in the Library's folder Application Support.
class FileManager final : public posix::FileManager {
public:
    using posix::FileManager::FileManager;

    std::vector<std::filesystem::path> applicationSupportDirectories() override;
};

} // namespace hollowfernpike::macos
