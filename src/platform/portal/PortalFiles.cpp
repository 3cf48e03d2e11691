#include "platform/portal/PortalFiles.h"

#include "platform/freedesktop/entries/GlibPointers.h"
#include "platform/freedesktop/files/BaseDirectories.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <system_error>
#include <vector>

namespace hollowfernpike::portal {

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

freedesktop::KeyFilePointer read(const fs::path& path) {
    freedesktop::KeyFilePointer file(g_key_file_new());
    g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr);
    return file;
}

Names listOf(const freedesktop::KeyFilePointer& file, const char* group, const char* key) {
    const freedesktop::TextListPointer list(
        g_key_file_get_string_list(file.get(), group, key, nullptr, nullptr));
    Names names;
    for (char** name = list.get(); name != nullptr && *name != nullptr; ++name) {
        names.emplace_back(*name);
    }
    return names;
}

Names split(const std::string& text, char separator) {
    Names names;
    std::istringstream stream(text);
    for (std::string name; std::getline(stream, name, separator);) {
        names.push_back(name);
    }
    return names;
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

/// The portals that the user, or the makers of the desktop, have chosen for the interface, the best
/// first; absent if they have chosen nothing.
std::optional<Names> preferredPortals(const char* interface, const Names& desktops) {
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
            constexpr const char* group = "preferred";
            const auto keys = read(folder / "xdg-desktop-portal" / file);
            if (g_key_file_has_group(keys.get(), group) != 0) {
                const bool isNamed = g_key_file_has_key(keys.get(), group, interface, nullptr) != 0;
                return listOf(keys, group, isNamed ? interface : "default");
            }
        }
    }
    return std::nullopt;
}

/// A portal that serves the interface.
struct Portal {
    std::string name;
    Names desktops; ///< where it is used unless something else was chosen
};

std::vector<Portal> installedPortals(std::string_view interface) {
    constexpr const char* group = "portal";
    std::vector<Portal> portals;
    for (const auto& folder : freedesktop::dataDirectories()) {
        std::error_code isMissing;
        for (const auto& entry :
             fs::directory_iterator(folder / "xdg-desktop-portal/portals", isMissing)) {
            const auto keys = read(entry.path());
            if (contains(listOf(keys, group, "Interfaces"), interface)) {
                portals.push_back({.name = entry.path().stem().string(),
                                   .desktops = listOf(keys, group, "UseIn")});
            }
        }
    }
    return portals;
}

/// The first portal of which that is true; empty for none.
std::string nameOfFirst(const std::vector<Portal>& portals,
                        const std::function<bool(const Portal&)>& isWanted) {
    const auto found = std::ranges::find_if(portals, isWanted);
    return found == portals.end() ? std::string{} : found->name;
}

} // namespace

std::string portalFor(const char* interface, const std::string& session) {
    const auto desktops = split(session, ':');
    const auto portals = installedPortals(interface);
    const auto preferred = preferredPortals(interface, desktops);
    if (!preferred) {
        return nameOfFirst(portals, [&](const Portal& portal) {
            return std::ranges::any_of(desktops, [&](const std::string& desktop) {
                return contains(portal.desktops, desktop) ||
                       contains(portal.desktops, inSmallLetters(desktop));
            });
        });
    }
    if (contains(*preferred, "none")) {
        return {};
    }
    for (const auto& name : *preferred) {
        auto found = nameOfFirst(
            portals, [&](const Portal& portal) { return portal.name == name || name == "*"; });
        if (!found.empty()) {
            return found;
        }
    }
    return {};
}

} // namespace hollowfernpike::portal
