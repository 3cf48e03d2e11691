#include "platform/freedesktop/instance/PrivateDirectory.h"

#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/files/FileManager.h"
#include "platform/posix/FileErrors.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

std::optional<PrivateDirectory> usersRuntimeDirectory() {
    const auto directory = runtimeDirectory();
    if (!directory) {
        return std::nullopt;
    }
    try {
        return PrivateDirectory(*directory);
    } catch (const platform::FileError&) {
        return std::nullopt;
    }
}

std::filesystem::path ownDirectory() {
    return temporaryDirectory() / ("hollowfernpike-" + std::to_string(::geteuid()));
}

bool isAnothers(const std::filesystem::path& path) {
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 && status.st_uid != ::geteuid();
}

} // namespace

PrivateDirectory::PrivateDirectory(std::filesystem::path path, uid_t user)
    : path_(std::move(path)),
      descriptor_(::open(path_.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
    struct stat status = {};
    if (!descriptor_ || ::fstat(descriptor_.get(), &status) != 0) {
        throw posix::fileError(posix::FileOperation::read, path_, errno);
    }
    constexpr mode_t forOthers = S_IRWXG | S_IRWXO;
    if (status.st_uid != user || (status.st_mode & forOthers) != 0) {
        throw posix::notPrivate(path_);
    }
}

PrivateDirectory PrivateDirectory::forRuntime() {
    if (auto directory = usersRuntimeDirectory()) {
        return std::move(*directory);
    }
    // Anybody may take a name in the temporary directory; nobody else writes to the user's cache.
    const auto cache = cacheHome();
    if (isAnothers(ownDirectory()) && cache) {
        const auto path = *cache / "hollowfernpike";
        FileManager().createDirectory(path);
        return PrivateDirectory(path);
    }
    auto path = ownDirectory();
    if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        throw posix::fileError(posix::FileOperation::createDirectory, path, errno);
    }
    return PrivateDirectory(std::move(path));
}

} // namespace hollowfernpike::freedesktop
