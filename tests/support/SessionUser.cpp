#include "support/SessionUser.h"

#include "support/Privileges.h"

#include <system_error>

#include <unistd.h>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

/// What has gone meanwhile is nobody's.
void give(const fs::path& path) {
    if (::lchown(path.c_str(), ordinaryUser, ordinaryUser) != 0 && errno != ENOENT) {
        throw std::system_error(errno, std::generic_category(), path);
    }
}

} // namespace

bool hasSessionUser() {
    return ::geteuid() == 0;
}

std::vector<std::string> asSessionUser(std::vector<std::string> commandLine) {
    if (hasSessionUser()) {
        const auto user = std::to_string(ordinaryUser);
        commandLine.insert(commandLine.begin(),
                           {"setpriv", "--reuid", user, "--regid", user, "--clear-groups"});
    }
    return commandLine;
}

void giveToSessionUser(const fs::path& folder) {
    if (!hasSessionUser()) {
        return;
    }
    give(folder);
    std::error_code isGone;
    for (auto entry = fs::recursive_directory_iterator(folder, isGone);
         entry != fs::recursive_directory_iterator(); entry.increment(isGone)) {
        give(entry->path());
    }
}

fs::path lendToSessionUser(const fs::path& file, const fs::path& folder) {
    if (!hasSessionUser()) {
        return file;
    }
    const auto place = folder / "lent";
    fs::create_directories(place);
    const auto name = file.filename();
    for (const auto& part : {name, fs::path("lib" + name.string() + ".so")}) {
        if (const auto found = file.parent_path() / part; part == name || exists(found)) {
            fs::copy_file(found, place / part, fs::copy_options::skip_existing);
        }
    }
    giveToSessionUser(folder);
    return place / name;
}

} // namespace hollowfernpike::test
