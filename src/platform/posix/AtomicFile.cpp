#include "platform/posix/AtomicFile.h"

#include "platform/posix/Descriptor.h"
#include "platform/posix/FileErrors.h"
#include "platform/posix/SystemCall.h"

#include <optional>
#include <string>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::posix {

namespace {

constexpr auto writing = FileOperation::write;
constexpr int longestChain = 40; // of symbolic links, as the kernel follows them

/// A new, empty file, private to the user, removed with the object unless it was renamed. A process
/// that is killed leaves it behind. Later runs do not remove it: its name does not tell whether
/// another process is still writing it.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& folder) {
        std::string name = folder / ".hollowfernpike-XXXXXX";
        descriptor_ = Descriptor{checked(::mkostemp(name.data(), O_CLOEXEC))};
        path_ = name;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!path_.empty()) {
            ::unlink(path_.c_str());
        }
    }

    int descriptor() const { return descriptor_.get(); }

    /// Gives the file this name, in place of whatever has it.
    void rename(const std::filesystem::path& target) {
        checked(::rename(path_.c_str(), target.c_str()));
        path_.clear();
    }

private:
    std::filesystem::path path_;
    Descriptor descriptor_;
};

/// Where the file really is, or would be made.
std::filesystem::path withoutLinks(std::filesystem::path file) {
    for (int link = 0; link <= longestChain; ++link) {
        std::error_code notALink;
        const auto next = std::filesystem::read_symlink(file, notALink);
        if (notALink) {
            return file;
        }
        file = file.parent_path() / next;
    }
    throw std::system_error{ELOOP, std::generic_category()};
}

std::filesystem::path folderOf(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : ".";
}

std::optional<struct stat> statusOf(const std::filesystem::path& file) {
    struct stat status = {};
    if (::stat(file.c_str(), &status) == 0) {
        return status;
    }
    if (errno == ENOENT) {
        return std::nullopt;
    }
    throw std::system_error{errno, std::generic_category()};
}

void requireRegular(const std::filesystem::path& file, const struct stat& status) {
    if (S_ISDIR(status.st_mode)) {
        throw fileError(writing, file, EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        throw notARegularFile(writing, file);
    }
}

/// Copies group, owner and mode. Failures are ignored: some file systems have no owners or modes or
/// refuse to change them, and the new file then stays private.
void takeOver(int descriptor, const struct stat& old) {
    constexpr auto unchanged = static_cast<uid_t>(-1);
    const bool kept = ::fchown(descriptor, unchanged, old.st_gid) == 0 &&
                      ::fchown(descriptor, old.st_uid, unchanged) == 0 &&
                      ::fchmod(descriptor, old.st_mode & 07777) == 0;
    static_cast<void>(kept);
}

void writeAll(int descriptor, std::string_view data) {
    while (!data.empty()) {
        const auto written =
            checked(uninterrupted([&] { return ::write(descriptor, data.data(), data.size()); }));
        data.remove_prefix(static_cast<std::size_t>(written));
    }
}

void synchronize(int descriptor) {
#ifdef F_FULLFSYNC // where fsync() leaves the data in the drive's own memory
    if (::fcntl(descriptor, F_FULLFSYNC) == 0) {
        return; // not every file system has it
    }
#endif
    checked(uninterrupted([&] { return ::fsync(descriptor); }));
}

/// Skips a folder that we may not read, or whose file system cannot synchronize folders: the system
/// writes it to the disk later.
void synchronizeFolder(const std::filesystem::path& folder) {
    const Descriptor descriptor{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (!descriptor) {
        return;
    }
    try {
        synchronize(descriptor.get());
    } catch (const std::system_error& error) {
        if (error.code() != std::errc::invalid_argument) {
            throw;
        }
    }
}

void replace(const std::filesystem::path& target, std::string_view data) {
    const auto old = statusOf(target);
    if (old) {
        requireRegular(target, *old);
    }
    const auto folder = folderOf(target);
    TemporaryFile replacement{folder};
    if (old) {
        takeOver(replacement.descriptor(), *old);
    }
    writeAll(replacement.descriptor(), data);
    synchronize(replacement.descriptor());
    replacement.rename(target);
    synchronizeFolder(folder);
}

} // namespace

void writeFileAtomically(const std::filesystem::path& file, std::string_view data) {
    try {
        replace(withoutLinks(file), data);
    } catch (const std::system_error& error) {
        throw fileError(writing, file, error.code().value());
    }
}

} // namespace hollowfernpike::posix
