#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// What may lie around in the folders of somebody's home: icons, entries and folders that somebody
/// has made to harm whoever reads them.
class HostileHome {
public:
    /// Lays out the icons, and a pipe in the place of the settings.
    HostileHome(std::filesystem::path home, std::filesystem::path applications);

    /// Entries of the applications folder, each with another of the icons, and with a name that
    /// turns the direction of writing.
    const std::vector<std::filesystem::path>& entries() const { return entries_; }

    /// An entry outside of the applications folders that others may have written.
    const std::filesystem::path& foreignEntry() const { return foreignEntry_; }

    /// Whether anybody has started what that entry names.
    bool isForeignEntryStarted() const;

    /// Applications folders that link to each other, made anew.
    void layMaze() const;

    /// Writes entries that are no entries, and removes them.
    void changeEntries() const;

    /// Writes all icons anew.
    void layIcons() const;

private:
    void addEntry(const std::filesystem::path& icon);
    void layForeignEntry() const;
    std::filesystem::path icon(const char* name) const { return home_ / "icons" / name; }

    std::filesystem::path home_;
    std::filesystem::path applications_;
    std::filesystem::path foreignEntry_ = home_ / "Downloads/foreign.desktop";
    std::vector<std::filesystem::path> entries_;
};

} // namespace hollowfernpike::test
