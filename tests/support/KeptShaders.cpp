#include "support/KeptShaders.h"

#include <cstddef>
#include <string>
#include <system_error>

#include <unistd.h>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

// Other sessions begin and end at the same time, and whatever is not there is compiled anew. So
// nothing here has to succeed.

void copyAll(const fs::path& from, const fs::path& to) {
    std::error_code ignored;
    fs::create_directories(to.parent_path(), ignored);
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::skip_existing, ignored);
}

std::size_t entriesIn(const fs::path& folder) {
    std::size_t count = 0;
    std::error_code ignored;
    for (auto entry = fs::recursive_directory_iterator(folder, ignored);
         entry != fs::recursive_directory_iterator(); entry.increment(ignored)) {
        ++count;
    }
    return count;
}

} // namespace

KeptShaders::KeptShaders(const fs::path& home) : ofSession_(home / ".cache/mesa_shader_cache") {
    copyAll(HFP_KEPT_SHADERS, ofSession_);
}

KeptShaders::~KeptShaders() {
    if (entriesIn(ofSession_) <= entriesIn(HFP_KEPT_SHADERS)) {
        return;
    }
    const auto next = std::string{HFP_KEPT_SHADERS} + '.' + std::to_string(::getpid());
    copyAll(ofSession_, next);
    std::error_code ignored;
    fs::rename(HFP_KEPT_SHADERS, next + ".old", ignored);
    fs::rename(next, HFP_KEPT_SHADERS, ignored);
    fs::remove_all(next, ignored);
    fs::remove_all(next + ".old", ignored);
}

} // namespace hollowfernpike::test
