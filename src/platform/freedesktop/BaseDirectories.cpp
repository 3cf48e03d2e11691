#include "platform/freedesktop/BaseDirectories.h"

#include <cerrno>
#include <cstdlib>
#include <sstream>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using Directory = std::optional<std::filesystem::path>;

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

std::vector<std::filesystem::path> directoryList(const char* variable, const char* standard) {
    const char* const value = std::getenv(variable);
    const bool isSet = value != nullptr && *value != '\0';
    std::istringstream list(isSet ? value : standard);
    std::vector<std::filesystem::path> directories;
    for (std::string directory; std::getline(list, directory, ':');) {
        if (directory.starts_with('/')) {
            directories.emplace_back(directory);
        }
    }
    return directories;
}

} // namespace

std::optional<std::filesystem::path> homeDirectory() {
    auto home = environmentDirectory("HOME");
    return home ? home : databaseHome();
}

std::optional<std::filesystem::path> dataHome() {
    return directoryOrBelowHome("XDG_DATA_HOME", ".local/share");
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

std::optional<std::filesystem::path> runtimeDirectory() {
    return environmentDirectory("XDG_RUNTIME_DIR");
}

std::filesystem::path temporaryDirectory() {
    return environmentDirectory("TMPDIR").value_or("/tmp");
}

} // namespace hollowfernpike::freedesktop
