#pragma once

#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/posix/FileManager.h"

namespace hollowfernpike::freedesktop {

/// Applications keep the user's data below the XDG data home.
class FileManager final : public posix::FileManager {
public:
    using posix::FileManager::FileManager;

    std::vector<std::filesystem::path> applicationSupportDirectories() override {
        const auto directory = dataHome();
        return directory ? std::vector{*directory} : std::vector<std::filesystem::path>{};
    }
};

} // namespace hollowfernpike::freedesktop
