#pragma once

#include "support/Mounts.h"

#include <filesystem>
#include <string>

#include <sys/mount.h>

namespace hollowfernpike::test {

/// A disk of its own at a new folder, with room for that many bytes and not one more. This process
/// and the programs that it starts from then on see it, nobody else.
class SmallDisk {
public:
    /// Throws std::system_error if the system does not let us mount anything.
    SmallDisk(std::filesystem::path folder, std::size_t bytes) : folder_(std::move(folder)) {
        leaveTheMountsOfOthers();
        std::filesystem::create_directory(folder_);
        const auto options = "mode=0777,size=" + std::to_string(bytes);
        requireMount(::mount("tmpfs", folder_.c_str(), "tmpfs", 0, options.c_str()) == 0);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() { ::umount2(folder_.c_str(), MNT_DETACH); }

    const std::filesystem::path& folder() const { return folder_; }

private:
    std::filesystem::path folder_;
};

} // namespace hollowfernpike::test
