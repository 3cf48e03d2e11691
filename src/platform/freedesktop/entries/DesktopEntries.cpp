#include "platform/freedesktop/entries/DesktopEntries.h"

#include "platform/LocalizedError.h"
#include "platform/freedesktop/files/BaseDirectories.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <unordered_set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds shortestRest{1}; // between two scans if the kernel does not watch

bool isSameList(const std::vector<DesktopEntry>& left, const std::vector<DesktopEntry>& right) {
    return std::ranges::equal(left, right, [](const auto& one, const auto& other) {
        return one.path == other.path && one.identifier == other.identifier &&
               one.stamp == other.stamp;
    });
}

} // namespace

/// An entry file in an applications directory.
struct DesktopEntries::InstalledFile {
    std::string path;
    std::string identifier; ///< its path below the directory, "-" for "/", without ".desktop"
    FileStamp stamp;
    bool isInstalled = true;
};

/// Collects all entry files below some directories, in the order of the directories. Of several
/// with one identifier only the first is listed, even if it is hidden or invalid. Every directory,
/// missing ones included, is added to the watch before it is read, and read once.
class DesktopEntries::Collector {
public:
    explicit Collector(DirectoryWatch& watch) : watch_(watch) {}

    void addDirectory(const fs::path& directory, const std::string& prefix = {}) {
        watch_.add(directory);
        const auto stamp = stampOf(directory);
        if (!stamp || !seen_.emplace(stamp->device, stamp->inode).second) {
            return;
        }
        for (const auto& below : addFiles(directory, prefix)) {
            addDirectory(below, prefix + below.filename().string() + '-');
        }
    }

    void addStray(const std::string& path) {
        const auto first = files_.size();
        addFile(path, {});
        for (auto file = first; file < files_.size(); ++file) {
            files_[file].isInstalled = false;
        }
    }

    std::vector<InstalledFile> take() { return std::move(files_); }

private:
    // Adds the directory's own files first: they precede those in the subdirectories returned.
    std::vector<fs::path> addFiles(const fs::path& directory, const std::string& prefix) {
        std::vector<fs::path> subdirectories;
        std::error_code error;
        for (fs::directory_iterator file(directory, error), end; !error && file != end;
             file.increment(error)) {
            if (file->path().extension() == ".desktop") {
                addFile(file->path(), prefix);
            } else if (std::error_code unknown; file->is_directory(unknown)) {
                subdirectories.push_back(file->path());
            }
        }
        return subdirectories;
    }

    void addFile(const fs::path& path, const std::string& prefix) {
        const auto identifier = prefix + path.stem().string();
        const auto stamp = stampOf(path);
        if (stamp && identifiers_.insert(identifier).second) {
            files_.push_back({.path = path.string(), .identifier = identifier, .stamp = *stamp});
        }
    }

    DirectoryWatch& watch_;
    std::vector<InstalledFile> files_;
    std::unordered_set<std::string> identifiers_;
    std::set<std::pair<dev_t, ino_t>> seen_; // directories; links may lead to one in many ways
};

namespace {

/// Only root installs something there, whatever the environment calls applications directories.
constexpr const char* systemDirectories[] = {"/usr/local/share/applications",
                                             "/usr/share/applications"};

} // namespace

std::vector<fs::path> applicationsDirectories() {
    auto directories = dataDirectories();
    for (auto& directory : directories) {
        directory /= "applications";
    }
    return directories;
}

const EntryIndex& DesktopEntries::index() {
    if (isOutdated()) {
        renew();
    }
    return index_;
}

bool DesktopEntries::isOutdated() {
    if (!watch_) {
        return true;
    }
    const bool isRecent = std::chrono::steady_clock::now() - renewed_ < shortestRest;
    return watch_->hasChanged() && !(watch_->isBlind() && isRecent);
}

std::uint64_t DesktopEntries::generation() {
    index();
    return generation_;
}

void DesktopEntries::renew() {
    watch_.emplace();
    renewed_ = std::chrono::steady_clock::now();
    Collector collector(*watch_);
    for (const auto& directory : directories_) {
        collector.addDirectory(directory);
    }
    for (const auto& stray : strays_) {
        collector.addStray(stray);
    }
    std::vector<DesktopEntry> entries;
    for (const auto& file : collector.take()) {
        if (auto entry = current(file)) {
            entries.push_back(std::move(*entry));
        }
    }
    if (generation_ == 0 || !isSameList(entries, index_.entries())) {
        index_ = EntryIndex(std::move(entries));
        ++generation_;
    }
}

std::optional<DesktopEntry> DesktopEntries::current(const InstalledFile& file) const {
    if (const auto* known = index_.withPath(file.path);
        known != nullptr && known->stamp == file.stamp && known->identifier == file.identifier) {
        return *known;
    }
    try {
        auto entry = readDesktopEntry(file.path);
        entry.identifier = file.identifier;
        entry.isInstalled = file.isInstalled;
        return entry.hidden ? std::nullopt : std::optional(std::move(entry));
    } catch (const platform::LocalizedError&) {
        return std::nullopt;
    }
}

DesktopEntry DesktopEntries::entryAt(const std::string& path) {
    const auto* known = index().withPath(path);
    if (known != nullptr && stampOf(path) == known->stamp) {
        return *known;
    }
    auto entry = readDesktopEntry(path);
    entry.identifier = identifierOf(entry);
    return entry;
}

bool DesktopEntries::isTrusted(const std::string& path) const {
    std::error_code unknown;
    // A link may lead out of an applications directory, or into one.
    for (const auto& file : {fs::path(path).lexically_normal(), fs::canonical(path, unknown)}) {
        const auto holds = [&](const fs::path& directory) {
            const auto below = file.lexically_relative(directory.lexically_normal());
            return !below.empty() && *below.begin() != "..";
        };
        if (std::ranges::any_of(directories_, holds) ||
            std::ranges::any_of(systemDirectories, holds)) {
            return true;
        }
    }
    struct stat status = {};
    return statusAt(path, status) == 0 && (status.st_uid == ::geteuid() || status.st_uid == 0) &&
           (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 &&
           ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

std::string DesktopEntries::identifierOf(const DesktopEntry& entry) {
    if (const auto* known = index().withPath(entry.path)) {
        return known->identifier;
    }
    const auto* namesake = index().withIdentifier(entry.name);
    if (namesake == nullptr && !entry.hidden && strays_.insert(entry.path).second) {
        renew();
    }
    return entry.name;
}

} // namespace hollowfernpike::freedesktop
