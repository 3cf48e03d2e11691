#include "platform/freedesktop/entries/EntryIndex.h"

#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/entries/Names.h"

#include <algorithm>

namespace hollowfernpike::freedesktop {

void EntryKeys::add(std::string key, std::size_t entry) {
    if (!key.empty()) {
        keys_.emplace_back(std::move(key), static_cast<std::uint32_t>(entry));
    }
}

void EntryKeys::sort() {
    std::ranges::sort(keys_);
    keys_.erase(std::unique(keys_.begin(), keys_.end()), keys_.end());
    keys_.shrink_to_fit();
}

std::vector<std::size_t> EntryKeys::find(std::string_view key) const {
    std::vector<std::size_t> entries;
    auto at = std::ranges::lower_bound(
        keys_, key, {}, [](const auto& kept) { return std::string_view(kept.first); });
    for (; at != keys_.end() && at->first == key; ++at) {
        entries.push_back(at->second);
    }
    return entries;
}

EntryIndex::EntryIndex(std::vector<DesktopEntry> entries) : entries_(std::move(entries)) {
    for (std::size_t position = 0; position < entries_.size(); ++position) {
        add(entries_[position], position);
    }
    for (auto* keys : {&identifiers_, &paths_, &foldedIdentifiers_, &lastLabels_, &windowClasses_,
                       &foldedWindowClasses_, &programs_, &programNames_}) {
        keys->sort();
    }
}

void EntryIndex::add(const DesktopEntry& entry, std::size_t position) {
    identifiers_.add(entry.identifier, position);
    paths_.add(entry.path, position);
    foldedIdentifiers_.add(folded(entry.identifier), position);
    if (const auto dot = entry.identifier.rfind('.'); dot != std::string::npos) {
        lastLabels_.add(folded(entry.identifier.substr(dot + 1)), position);
    }
    windowClasses_.add(entry.windowClass, position);
    foldedWindowClasses_.add(folded(entry.windowClass), position);
    programs_.add(entry.programFile, position);
    programNames_.add(std::string{fileName(entry.programFile)}, position);
    programNames_.add(std::string{fileName(identifyingProgram(entry.words))}, position);
}

EntryIndex::Entries EntryIndex::at(const EntryKeys& keys, std::string_view key) const {
    Entries found;
    for (const auto position : keys.find(key)) {
        found.push_back(&entries_[position]);
    }
    return found;
}

const DesktopEntry* EntryIndex::firstAt(const EntryKeys& keys, std::string_view key) const {
    const auto positions = keys.find(key);
    return positions.empty() ? nullptr : &entries_[positions.front()];
}

const DesktopEntry* EntryIndex::withIdentifier(std::string_view identifier) const {
    return firstAt(identifiers_, identifier);
}

const DesktopEntry* EntryIndex::withPath(std::string_view path) const {
    return firstAt(paths_, path);
}

EntryIndex::Entries EntryIndex::withIdentifierAlike(std::string_view identifier) const {
    return at(foldedIdentifiers_, folded(identifier));
}

EntryIndex::Entries EntryIndex::withLastLabelAlike(std::string_view label) const {
    return at(lastLabels_, folded(label));
}

EntryIndex::Entries EntryIndex::withWindowClass(std::string_view windowClass) const {
    return at(windowClasses_, windowClass);
}

EntryIndex::Entries EntryIndex::withWindowClassAlike(std::string_view windowClass) const {
    return at(foldedWindowClasses_, folded(windowClass));
}

EntryIndex::Entries EntryIndex::withProgram(std::string_view file) const {
    return at(programs_, file);
}

EntryIndex::Entries EntryIndex::withProgramName(std::string_view name) const {
    return at(programNames_, name);
}

} // namespace hollowfernpike::freedesktop
