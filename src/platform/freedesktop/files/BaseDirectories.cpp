#include "platform/freedesktop/files/BaseDirectories.h"

#include "platform/freedesktop/launching/OwnEnvironment.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <string>
#include <system_error>

#include <pwd.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using Directory = std::optional<std::filesystem::path>;
using Directories = std::vector<std::filesystem::path>;

Directory ifAbsolute(const char* text) {
    if (text == nullptr || *text != '/') {
        return std::nullopt;
    }
    return text;
}

Directory environmentDirectory(const char* variable) {
    return ifAbsolute(std::getenv(variable));
}

Directory databaseHome() {
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd* found = nullptr;
    while (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    return found == nullptr ? std::nullopt : ifAbsolute(found->pw_dir);
}

Directory directoryOrBelowHome(const char* variable, const char* below) {
    if (auto directory = environmentDirectory(variable)) {
        return directory;
    }
    const auto home = homeDirectory();
    return home ? Directory{*home / below} : std::nullopt;
}

Directories absoluteOnes(const char* text) {
    std::istringstream list(text);
    Directories directories;
    for (std::string directory; std::getline(list, directory, ':');) {
        if (directory.starts_with('/')) {
            directories.emplace_back(directory);
        }
    }
    return directories;
}

Directories directoryList(const char* variable, const char* standard) {
    const char* const value = std::getenv(variable);
    const auto directories = value == nullptr ? Directories{} : absoluteOnes(value);
    return directories.empty() ? absoluteOnes(standard) : directories;
}

std::string listText(const Directories& directories) {
    std::string text;
    for (const auto& directory : directories) {
        text += (text.empty() ? "" : ":") + directory.native();
    }
    return text;
}

} // namespace

std::optional<std::filesystem::path> homeDirectory() {
    auto home = environmentDirectory("HOME");
    return home ? home : databaseHome();
}

std::optional<std::filesystem::path> dataHome() {
    return directoryOrBelowHome("XDG_DATA_HOME", ".local/share");
}

std::optional<std::filesystem::path> cacheHome() {
    return directoryOrBelowHome("XDG_CACHE_HOME", ".cache");
}

std::optional<std::filesystem::path> configHome() {
    return directoryOrBelowHome("XDG_CONFIG_HOME", ".config");
}

std::vector<std::filesystem::path> sharedDataDirectories() {
    return directoryList("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

std::vector<std::filesystem::path> sharedConfigDirectories() {
    return directoryList("XDG_CONFIG_DIRS", "/etc/xdg");
}

std::vector<std::filesystem::path> dataDirectories() {
    auto directories = sharedDataDirectories();
    if (const auto own = dataHome()) {
        directories.insert(directories.begin(), *own);
    }
    return directories;
}

bool hasDataFile(const std::filesystem::path& file) {
    return std::ranges::any_of(dataDirectories(), [&](const auto& directory) {
        std::error_code unknown;
        return std::filesystem::exists(directory / file, unknown);
    });
}

std::optional<std::filesystem::path> runtimeDirectory() {
    return environmentDirectory("XDG_RUNTIME_DIR");
}

std::filesystem::path temporaryDirectory() {
    return environmentDirectory("TMPDIR").value_or("/tmp");
}

void settleBaseDirectories() {
    setOwnVariable("HOME", homeDirectory());
    for (const auto* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                                 "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
        setOwnVariable(variable, environmentDirectory(variable));
    }
    setOwnVariable("XDG_DATA_DIRS", listText(sharedDataDirectories()));
    setOwnVariable("XDG_CONFIG_DIRS", listText(sharedConfigDirectories()));
}

} // namespace hollowfernpike::freedesktop
