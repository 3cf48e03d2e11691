#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace hollowfernpike::test {

TemporaryDirectory::TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "hollowfernpike-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
}

} // namespace hollowfernpike::test
