#pragma once

#include "support/Mounts.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace hollowfernpike::test {

/// For this process and the programs that it starts from then on, the system's user database knows
/// this user alone, with this home.
inline void haveHomeInTheUserDatabase(const std::filesystem::path& home) {
    leaveTheMountsOfOthers();
    const TemporaryDirectory folder;
    const auto database = folder.path() / "passwd";
    std::ofstream{database} << "someone:x:" << ::getuid() << ':' << ::getgid()
                            << "::" << home.string() << ":/bin/sh\n";
    requireMount(::mount(database.c_str(), "/etc/passwd", nullptr, MS_BIND, nullptr) == 0);
    const auto* const user = ::getpwuid(::getuid());
    if (user == nullptr || user->pw_dir != home) {
        throw std::runtime_error("the system does not look up users in /etc/passwd");
    }
}

} // namespace hollowfernpike::test
