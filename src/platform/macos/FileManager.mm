#include "platform/macos/FileManager.h"

#include "platform/macos/Text.h"

namespace hollowfernpike::macos {

std::vector<std::filesystem::path> FileManager::applicationSupportDirectories() {
    @autoreleasepool {
        std::vector<std::filesystem::path> directories;
        for (NSString* path in NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory,
                                                                   NSUserDomainMask, YES)) {
            directories.emplace_back(utf8(path));
        }
        return directories;
    }
}

} // namespace hollowfernpike::macos
