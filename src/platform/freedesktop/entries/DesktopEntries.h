#pragma once

#include "platform/freedesktop/entries/EntryIndex.h"
#include "platform/freedesktop/files/DirectoryWatch.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Where entries of installed applications lie, the most important directory first: "applications"
/// in $XDG_DATA_HOME and in each of $XDG_DATA_DIRS. Read from the environment anew each time; they
/// need not exist.
std::vector<std::filesystem::path> applicationsDirectories();

/// The applications that are installed, as the entry files tell at the moment of asking. Nothing is
/// read before the first question, only changed files are read again, and nothing wakes us when
/// files change. Where the kernel would not watch the directories (it has limits), answers may be a
/// second old. Main thread only.
class DesktopEntries {
public:
    explicit DesktopEntries(
        std::vector<std::filesystem::path> directories = applicationsDirectories())
        : directories_(std::move(directories)) {}

    /// Where applications may be installed, the most important directory first.
    const std::vector<std::filesystem::path>& directories() const { return directories_; }

    /// Valid until the next call of any member.
    const EntryIndex& index();

    /// Grows whenever the index differs from what it was.
    std::uint64_t generation();

    /// The entry at `path`, installed or not, as it is now. One that is not installed belongs to
    /// the index from then on, behind all installed ones, so that its processes and windows are
    /// known; not if an installed one has its identifier. Throws platform::LocalizedError as
    /// readDesktopEntry() does.
    DesktopEntry entryAt(const std::string& path);

    /// Whether the entry at `path` may be launched: it lies in an applications directory, one of
    /// the system's included, or file managers would launch it, too: it belongs to the user or to
    /// root, nobody else may write it, and it is executable.
    bool isTrusted(const std::string& path) const;

private:
    struct InstalledFile;
    class Collector;

    std::string identifierOf(const DesktopEntry& entry);
    bool isOutdated();
    void renew();
    std::optional<DesktopEntry> current(const InstalledFile& file) const;

    std::vector<std::filesystem::path> directories_;
    std::set<std::string> strays_; ///< paths of entries that are not installed and were asked for
    std::optional<DirectoryWatch> watch_;
    std::chrono::steady_clock::time_point renewed_;
    EntryIndex index_;
    std::uint64_t generation_ = 0;
};

} // namespace hollowfernpike::freedesktop
