#include "platform/posix/FileManager.h"

#include "platform/posix/AtomicFile.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/FileErrors.h"
#include "platform/posix/SystemCall.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::posix {

namespace {

bool isDirectory(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

void requireAtMost(std::size_t largest, std::size_t size) {
    if (size > largest) {
        throw std::system_error{EFBIG, std::generic_category()};
    }
}

/// The size of what is open, if it is a regular file.
std::size_t sizeOfRegular(const std::filesystem::path& file, int descriptor) {
    struct stat status = {};
    checked(::fstat(descriptor, &status));
    if (S_ISDIR(status.st_mode)) {
        throw fileError(FileOperation::read, file, EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        throw notARegularFile(FileOperation::read, file);
    }
    return static_cast<std::size_t>(status.st_size);
}

/// Reads to the end, past `expected` if need be: a file may grow meanwhile, and some report size 0.
std::string readAll(int descriptor, std::size_t expected, std::size_t largest) {
    requireAtMost(largest, expected);
    constexpr std::size_t step = 65536;
    std::string contents;
    std::size_t used = 0;
    ssize_t count = 1;
    for (std::size_t room = expected + 1; count > 0; room = step) {
        requireAtMost(largest, used);
        contents.resize(used + room);
        count = checked(
            uninterrupted([&] { return ::read(descriptor, contents.data() + used, room); }));
        used += static_cast<std::size_t>(count);
    }
    contents.resize(used);
    return contents;
}

} // namespace

void FileManager::createDirectory(const std::filesystem::path& directory) {
    const auto make = [&] { return ::mkdir(directory.c_str(), S_IRWXU) == 0 ? 0 : errno; };
    int failure = make();
    if (failure == ENOENT && directory.has_parent_path()) {
        createDirectory(directory.parent_path());
        failure = make();
    }
    if (failure != 0 && !isDirectory(directory)) {
        throw fileError(FileOperation::createDirectory, directory,
                        failure == EEXIST ? ENOTDIR : failure);
    }
}

bool FileManager::fileExists(const std::filesystem::path& file) {
    struct stat status = {};
    return ::stat(file.c_str(), &status) == 0;
}

std::string FileManager::readFile(const std::filesystem::path& file) {
    try {
        const Descriptor descriptor{checked(uninterrupted(
            [&] { return ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }))};
        const auto size = sizeOfRegular(file, descriptor.get());
        return readAll(descriptor.get(), size, largestFile_);
    } catch (const std::system_error& error) {
        throw fileError(FileOperation::read, file, error.code().value());
    }
}

void FileManager::writeFileAtomically(const std::filesystem::path& file, std::string_view data) {
    posix::writeFileAtomically(file, data);
}

} // namespace hollowfernpike::posix
