#include "platform/freedesktop/TemporaryFile.h"

#include "platform/freedesktop/SystemCall.h"

#include <string>
#include <string_view>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view prefix = ".hollowfernpike-";
constexpr std::string_view pattern = "XXXXXX";
constexpr time_t longestWrite = 3600; // seconds

bool isOurs(const std::filesystem::path& file) {
    const auto name = file.filename().native();
    return name.starts_with(prefix) && name.size() == prefix.size() + pattern.size();
}

bool isFileUntouchedSince(const std::filesystem::path& file, time_t moment) {
    struct stat status {};
    return ::lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_mtime <= moment;
}

} // namespace

TemporaryFile::TemporaryFile(const std::filesystem::path& folder) {
    std::string name = folder / (std::string{prefix} + std::string{pattern});
    descriptor_ = Descriptor{checked(::mkostemp(name.data(), O_CLOEXEC))};
    path_ = name;
}

TemporaryFile::~TemporaryFile() {
    if (!path_.empty()) {
        ::unlink(path_.c_str());
    }
}

void TemporaryFile::rename(const std::filesystem::path& target) {
    checked(::rename(path_.c_str(), target.c_str()));
    path_.clear();
}

void TemporaryFile::removeLeftOvers() const {
    struct stat status {};
    checked(::fstat(descriptor(), &status));
    std::error_code error;
    std::filesystem::directory_iterator entry{path_.parent_path(), error};
    for (; !error && entry != std::filesystem::directory_iterator{}; entry.increment(error)) {
        if (isOurs(*entry) && isFileUntouchedSince(*entry, status.st_mtime - longestWrite)) {
            ::unlink(entry->path().c_str());
        }
    }
}

} // namespace hollowfernpike::freedesktop
