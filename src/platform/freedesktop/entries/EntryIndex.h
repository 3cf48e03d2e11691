#pragma once

#include "platform/freedesktop/entries/DesktopEntry.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hollowfernpike::freedesktop {

/// Texts under which entries are found. A text may lead to several entries, and an entry may have
/// several texts.
class EntryKeys {
public:
    void add(std::string key, std::size_t entry);
    void sort();

    /// The entries under this text, by position, in the order of the entries.
    std::vector<std::size_t> find(std::string_view key) const;

private:
    std::vector<std::pair<std::string, std::uint32_t>> keys_;
};

/// Installed applications, indexed for each kind of lookup. Does not change.
class EntryIndex {
public:
    using Entries = std::vector<const DesktopEntry*>;

    EntryIndex() = default;

    /// `entries` are installed and not hidden, the most important first.
    explicit EntryIndex(std::vector<DesktopEntry> entries);

    const std::vector<DesktopEntry>& entries() const { return entries_; }

    const DesktopEntry* withIdentifier(std::string_view identifier) const;
    const DesktopEntry* withPath(std::string_view path) const;

    /// Each of these may find several, the most important first. "Alike" means without regard to
    /// the case of ASCII letters. Nothing is found under an empty text.
    Entries withIdentifierAlike(std::string_view identifier) const;
    Entries withLastLabelAlike(std::string_view label) const; ///< "app" finds "org.example.App"
    Entries withWindowClass(std::string_view windowClass) const;
    Entries withWindowClassAlike(std::string_view windowClass) const;
    Entries withProgram(std::string_view file) const;
    Entries withProgramName(std::string_view name) const;

private:
    Entries at(const EntryKeys& keys, std::string_view key) const;
    const DesktopEntry* firstAt(const EntryKeys& keys, std::string_view key) const;
    void add(const DesktopEntry& entry, std::size_t position);

    std::vector<DesktopEntry> entries_;
    EntryKeys identifiers_;
    EntryKeys paths_;
    EntryKeys foldedIdentifiers_;
    EntryKeys lastLabels_;
    EntryKeys windowClasses_;
    EntryKeys foldedWindowClasses_;
    EntryKeys programs_;
    EntryKeys programNames_;
};

} // namespace hollowfernpike::freedesktop
