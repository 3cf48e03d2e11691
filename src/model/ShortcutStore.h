#pragma once

#include "model/AppShortcut.h"
#include "platform/LocalizedError.h"
#include "platform/Services.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike {

/// Posted on the notification centre after every change of the list, once the file was written or
/// writing it has failed.
inline constexpr std::string_view shortcutsDidChange = "shortcutsDidChange";

/// Posted before that when writing has failed, unless it had failed for the change before as well.
inline constexpr std::string_view shortcutsWereNotSaved = "shortcutsWereNotSaved";

/// Owns the list of shortcuts and its file. Every change is written at once; if that fails, the
/// change stays in memory and the failure is logged. Main thread only.
class ShortcutStore {
public:
    /// Made, and its file loaded, on first use. Ends the process if the desktop knows no directory
    /// for the user's data.
    static ShortcutStore& shared() { return *platform::SharedInstance<ShortcutStore>::get(); }

    const std::vector<AppShortcut>& shortcuts() const { return shortcuts_; }
    const std::filesystem::path& fileURL() const { return fileURL_; }

    /// Why the last change is in memory alone; absent if it was written.
    const std::optional<platform::LocalizedError>& saveFailure() const { return saveFailure_; }

    /// Appends the shortcut. If the list has one with the same key code and the same whole flag
    /// word, logs a warning and changes nothing instead.
    void add(const AppShortcut& shortcut);

    /// Replaces the first record with the same `id`. Does nothing if there is none; logs a warning
    /// and changes nothing if a record with another `id` holds the combination.
    void update(const AppShortcut& shortcut);

    /// Removes every record with this `id`; writes and announces even if there was none.
    void remove(const UUID& id);

    /// The list as a document for people: indented, keys sorted. Absent, and logged, on failure.
    std::optional<std::string> exportData() const;

    /// Replaces the list by the document's, repeated combinations included. Throws
    /// `platform::LocalizedError` and changes nothing if the document is not a list of shortcuts.
    void importData(std::string_view data);

private:
    friend class platform::SharedInstance<ShortcutStore>;
    explicit ShortcutStore(const platform::Services& services);

    void load();
    void save();
    void commit();
    void log(std::string_view message, std::string_view description = {}) const;

    platform::FileManager& fileManager_;
    platform::NotificationCenter& notificationCenter_;
    std::ostream& standardOutput_;
    std::vector<AppShortcut> shortcuts_;
    std::filesystem::path fileURL_;
    std::optional<platform::LocalizedError> saveFailure_;
};

} // namespace hollowfernpike
