#include "model/ShortcutStore.h"

#include "model/OneLine.h"
#include "model/document/ShortcutDecoder.h"
#include "model/document/ShortcutEncoder.h"
#include "platform/FileManager.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr std::string_view loadFailed = "ショートカット読み込みエラー: ";
constexpr std::string_view saveFailed = "ショートカット保存エラー: ";
constexpr std::string_view exportFailed = "エクスポートエラー: ";
constexpr std::string_view combinationTaken = "警告: 同じショートカットキーが既に登録されています";

bool sameCombination(const AppShortcut& left, const AppShortcut& right) {
    return left.keyCode == right.keyCode && left.modifierFlags == right.modifierFlags;
}

} // namespace

ShortcutStore::ShortcutStore(const platform::Services& services)
    : fileManager_(services.fileManager), notificationCenter_(services.notificationCenter),
      standardOutput_(services.standardOutput) {
    const auto directories = fileManager_.applicationSupportDirectories();
    if (directories.empty()) {
        platform::fatalError("there is no directory for the user's data");
    }
    const auto folder = directories.front() / "Hollowfernpike";
    try {
        fileManager_.createDirectory(folder);
    } catch (const platform::FileError&) { // NOLINT(bugprone-empty-catch)
        // Without a folder the list is empty now, and the first save will say why it fails.
    }
    fileURL_ = folder / "shortcuts.json";
    load();
}

void ShortcutStore::add(const AppShortcut& shortcut) {
    const auto takes = [&](const AppShortcut& known) { return sameCombination(known, shortcut); };
    if (std::ranges::any_of(shortcuts_, takes)) {
        log(combinationTaken);
        return;
    }
    shortcuts_.push_back(shortcut);
    commit();
}

void ShortcutStore::update(const AppShortcut& shortcut) {
    const auto record = std::ranges::find(shortcuts_, shortcut.id, &AppShortcut::id);
    if (record == shortcuts_.end()) {
        return;
    }
    const auto takes = [&](const AppShortcut& known) {
        return known.id != shortcut.id && sameCombination(known, shortcut);
    };
    if (std::ranges::any_of(shortcuts_, takes)) {
        log(combinationTaken);
        return;
    }
    *record = shortcut;
    commit();
}

void ShortcutStore::remove(const UUID& id) {
    // Compares with a copy: `id` may refer into a record of the list, which erasing overwrites.
    std::erase_if(shortcuts_, [id = id](const AppShortcut& known) { return known.id == id; });
    commit();
}

std::optional<std::string> ShortcutStore::exportData() const {
    try {
        return encodeShortcuts(shortcuts_, DocumentLayout::pretty);
    } catch (const platform::LocalizedError& error) {
        log(exportFailed, error.japanese());
        return std::nullopt;
    }
}

void ShortcutStore::importData(std::string_view data) {
    shortcuts_ = decodeShortcuts(data);
    commit();
}

void ShortcutStore::load() {
    if (!fileManager_.fileExists(fileURL_)) {
        return;
    }
    try {
        shortcuts_ = decodeShortcuts(fileManager_.readFile(fileURL_));
    } catch (const platform::LocalizedError& error) {
        log(loadFailed, error.japanese());
    }
}

void ShortcutStore::commit() {
    save();
    notificationCenter_.post(shortcutsDidChange);
}

void ShortcutStore::save() {
    try {
        fileManager_.writeFileAtomically(fileURL_,
                                         encodeShortcuts(shortcuts_, DocumentLayout::compact));
        saveFailure_.reset();
    } catch (const platform::LocalizedError& error) {
        log(saveFailed, error.japanese());
        const bool isFirst = !saveFailure_;
        saveFailure_ = error;
        if (isFirst) {
            notificationCenter_.post(shortcutsWereNotSaved);
        }
    }
}

void ShortcutStore::log(std::string_view message, std::string_view description) const {
    standardOutput_ << message << oneLine(description) << '\n' << std::flush;
}

} // namespace hollowfernpike
