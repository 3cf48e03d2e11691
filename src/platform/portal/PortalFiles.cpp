#include "platform/portal/PortalFiles.h"

#include "platform/freedesktop/files/BaseDirectories.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <system_error>
#include <vector>

namespace hollowfernpike::portal {

namespace {

namespace fs = std::filesystem;

using Keys = std::map<std::string, std::string, std::less<>>;
using Names = std::vector<std::string>;

/// The keys of all groups; these files have one group each.
Keys keysIn(const fs::path& path) {
    Keys keys;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (const auto end = line.find('='); end != std::string::npos && line.front() != '#') {
            keys.emplace(line.substr(0, end), line.substr(end + 1));
        }
    }
    return keys;
}

Names split(std::string_view text, char separator) {
    Names names;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0) {
            names.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return names;
}

Names listOf(const Keys& keys, std::string_view key) {
    const auto found = keys.find(key);
    return found == keys.end() ? Names{} : split(found->second, ';');
}

bool contains(const Names& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

std::string inSmallLetters(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char letter) {
        return static_cast<char>(std::tolower(letter));
    });
    return text;
}

/// The portals that the user, or the makers of the desktop, have chosen for the interface; absent
/// if they have chosen nothing.
std::optional<Names> preferredPortals(std::string_view interface, const Names& desktops) {
    auto folders = freedesktop::sharedConfigDirectories();
    if (const auto own = freedesktop::configHome()) {
        folders.insert(folders.begin(), *own);
    }
    std::ranges::copy(freedesktop::dataDirectories(), std::back_inserter(folders));
    Names files;
    for (const auto& desktop : desktops) {
        files.push_back(inSmallLetters(desktop) + "-portals.conf");
    }
    files.emplace_back("portals.conf");
    for (const auto& folder : folders) {
        for (const auto& file : files) {
            const auto keys = keysIn(folder / "xdg-desktop-portal" / file);
            if (!keys.empty()) {
                return listOf(keys, keys.contains(interface) ? interface : "default");
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::string portalFor(std::string_view interface, std::string_view session) {
    const auto desktops = split(session, ':');
    const auto preferred = preferredPortals(interface, desktops);
    for (const auto& folder : freedesktop::dataDirectories()) {
        std::error_code isMissing;
        for (const auto& entry :
             fs::directory_iterator(folder / "xdg-desktop-portal/portals", isMissing)) {
            auto name = entry.path().stem().string();
            const auto keys = keysIn(entry.path());
            const auto users = listOf(keys, "UseIn");
            const bool isForUs =
                preferred ? contains(*preferred, name) || contains(*preferred, "*")
                          : std::ranges::any_of(desktops, [&](const std::string& desktop) {
                                return contains(users, desktop) ||
                                       contains(users, inSmallLetters(desktop));
                            });
            if (isForUs && contains(listOf(keys, "Interfaces"), interface)) {
                return name;
            }
        }
    }
    return {};
}

} // namespace hollowfernpike::portal
