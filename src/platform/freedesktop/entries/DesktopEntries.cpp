#include "platform/freedesktop/entries/DesktopEntries.h"

#include "platform/LocalizedError.h"

#include <algorithm>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::chrono::seconds shortestRest{1}; // between two scans if the kernel does not watch

bool isSameList(const std::vector<DesktopEntry>& left, const std::vector<DesktopEntry>& right) {
    return std::ranges::equal(left, right, [](const auto& one, const auto& other) {
        return one.path == other.path && one.identifier == other.identifier &&
               one.stamp == other.stamp;
    });
}

} // namespace

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
    std::vector<DesktopEntry> entries;
    for (const auto& file : installedFiles(directories_, *watch_)) {
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
    entry.identifier = identifierOf(path);
    return entry;
}

std::string DesktopEntries::identifierOf(const std::string& path) {
    const auto& entries = index();
    if (const auto* entry = entries.withPath(path)) {
        return entry->identifier;
    }
    const auto* namesake = entries.withIdentifier(entryName(path));
    const auto stamp = stampOf(path);
    const bool isSameFile = namesake != nullptr && stamp && namesake->stamp.isSameFile(*stamp);
    return isSameFile ? namesake->identifier : std::string{};
}

} // namespace hollowfernpike::freedesktop
