#include "platform/freedesktop/entries/ApplicationBundles.h"

#include "platform/LocalizedError.h"
#include "platform/freedesktop/entries/EntryFile.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view change = "change";

// Icon themes want a name, but some entries give an image's file name without a directory.
std::string withoutImageExtension(std::string name) {
    for (const std::string_view extension : {".png", ".svg", ".xpm"}) {
        if (name.ends_with(extension)) {
            name.erase(name.size() - extension.size());
            break;
        }
    }
    return name;
}

platform::FileIcon iconOf(const DesktopEntry& entry) {
    if (entry.icon.starts_with('/')) {
        return {.themeName = {}, .imageFile = entry.icon};
    }
    return {.themeName = withoutImageExtension(entry.icon), .imageFile = {}};
}

platform::InstalledApplication described(const DesktopEntry& entry, const EntryFile& file,
                                         const std::string& language) {
    const auto name = file.textIn(language, G_KEY_FILE_DESKTOP_KEY_NAME);
    return {
        .path = entry.path,
        .bundleIdentifier = entry.identifier,
        .name = name.empty() ? entry.name : name,
        .genericName = file.textIn(language, G_KEY_FILE_DESKTOP_KEY_GENERIC_NAME),
        .keywords = file.listIn(language, "Keywords"),
        .icon = iconOf(entry),
    };
}

} // namespace

std::optional<platform::ApplicationBundle> ApplicationBundles::bundleAt(const std::string& path) {
    try {
        auto entry = entries_.entryAt(path);
        if (entry.hidden) {
            return std::nullopt;
        }
        return platform::ApplicationBundle{.bundleIdentifier = std::move(entry.identifier)};
    } catch (const platform::LocalizedError&) {
        return std::nullopt;
    }
}

platform::FileIcon ApplicationBundles::iconForFile(const std::string& path) {
    try {
        return iconOf(entries_.entryAt(path));
    } catch (const platform::LocalizedError&) {
        return {};
    }
}

platform::Standing ApplicationBundles::standingOf(const std::string& path) {
    try {
        if (entries_.entryAt(path).hidden) {
            return platform::Standing::gone;
        }
    } catch (const platform::LocalizedError&) {
        return platform::Standing::gone;
    }
    return entries_.isTrusted(path) ? platform::Standing::fine : platform::Standing::untrusted;
}

// Translations are read for each listing and not kept: listings are rare, and we run for months.
std::vector<platform::InstalledApplication>
ApplicationBundles::installedApplications(std::string_view language) {
    const std::string code(language);
    std::vector<platform::InstalledApplication> applications;
    for (const auto& entry : entries_.index().entries()) {
        if (entry.noDisplay || !entry.isInstalled) {
            continue;
        }
        try {
            const EntryFile file(entry.path, Translations::all);
            if (file.isForThisDesktop()) {
                applications.push_back(described(entry, file, code));
            }
        } catch (const platform::LocalizedError&) {
            continue; // gone since the index was made
        }
    }
    return applications;
}

std::vector<std::string> ApplicationBundles::applicationDirectories() {
    std::vector<std::string> directories;
    for (const auto& directory : entries_.directories()) {
        std::error_code unknown;
        const auto isListed =
            std::ranges::find(directories, directory.string()) != directories.end();
        if (!isListed && std::filesystem::is_directory(directory, unknown)) {
            directories.push_back(directory.string());
        }
    }
    return directories;
}

std::unique_ptr<platform::Subscription> ApplicationBundles::watch(std::function<void()> onChange) {
    if (watch_) {
        watch_->tryAgain();
    } else {
        watch_.emplace(entries_.directories(), [this] { observers_.post(change); });
    }
    return observers_.observe(change, std::move(onChange));
}

std::string ApplicationBundles::displayName(const std::string& path, std::string_view language) {
    const auto stamp = stampOf(path);
    if (!stamp) {
        names_.erase(path);
        return {};
    }
    if (const auto known = names_.find(path); known != names_.end() &&
                                              known->second.stamp == *stamp &&
                                              known->second.language == language) {
        return known->second.name;
    }
    KnownName name{.stamp = *stamp, .language = std::string{language}, .name = {}};
    try {
        name.name =
            EntryFile(path, Translations::all).textIn(name.language, G_KEY_FILE_DESKTOP_KEY_NAME);
    } catch (const platform::LocalizedError&) {
        return {};
    }
    return names_.insert_or_assign(path, std::move(name)).first->second.name;
}

} // namespace hollowfernpike::freedesktop
