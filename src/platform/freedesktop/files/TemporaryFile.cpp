#include "platform/freedesktop/files/TemporaryFile.h"

#include "platform/freedesktop/files/SystemCall.h"

#include <string>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

TemporaryFile::TemporaryFile(const std::filesystem::path& folder) {
    std::string name = folder / ".hollowfernpike-XXXXXX";
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

} // namespace hollowfernpike::freedesktop
