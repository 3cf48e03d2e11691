#include "platform/freedesktop/entries/ApplicationsDirectories.h"

#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/files/DirectoryWatch.h"

#include <algorithm>
#include <system_error>
#include <unordered_set>

namespace hollowfernpike::freedesktop {

namespace {

namespace fs = std::filesystem;

// Collects in one pass over all directories.
class Collector {
public:
    explicit Collector(DirectoryWatch& watch) : watch_(watch) {}

    void addDirectory(const fs::path& directory, const std::string& prefix) {
        watch_.add(directory);
        const auto stamp = stampOf(directory);
        if (!stamp || isBelowItself(*stamp)) {
            return;
        }
        path_.push_back(*stamp);
        for (const auto& below : addFiles(directory, prefix)) {
            addDirectory(below, prefix + below.filename().string() + '-');
        }
        path_.pop_back();
    }

    std::vector<InstalledFile> take() { return std::move(files_); }

private:
    bool isBelowItself(const FileStamp& directory) const {
        return std::ranges::any_of(path_,
                                   [&](const auto& above) { return above.isSameFile(directory); });
    }

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
            files_.push_back({path.string(), identifier, *stamp});
        }
    }

    DirectoryWatch& watch_;
    std::vector<InstalledFile> files_;
    std::unordered_set<std::string> identifiers_;
    std::vector<FileStamp> path_; // from the applications directory down to the current one
};

} // namespace

std::vector<fs::path> applicationsDirectories() {
    std::vector<fs::path> directories;
    if (const auto home = dataHome()) {
        directories.push_back(*home / "applications");
    }
    for (const auto& directory : sharedDataDirectories()) {
        directories.push_back(directory / "applications");
    }
    return directories;
}

std::vector<InstalledFile> installedFiles(const std::vector<fs::path>& directories,
                                          DirectoryWatch& watch) {
    Collector collector(watch);
    for (const auto& directory : directories) {
        collector.addDirectory(directory, {});
    }
    return collector.take();
}

} // namespace hollowfernpike::freedesktop
