#include "platform/x11/windows/Snapshot.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace hollowfernpike::x11 {

namespace {

constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

} // namespace

bool Snapshot::isHere(const WindowRecord& record) const {
    return !currentDesktop || !record.desktop || *record.desktop == allDesktops ||
           *record.desktop == *currentDesktop;
}

std::vector<const WindowRecord*> Snapshot::byAge() const {
    std::unordered_map<xcb_window_t, std::size_t> ages;
    for (const auto window : oldestFirst) {
        ages.emplace(window, ages.size());
    }
    const auto ageOf = [&ages](const WindowRecord* record) {
        const auto found = ages.find(record->window);
        return found == ages.end() ? ages.size() : found->second;
    };
    std::vector<const WindowRecord*> records;
    std::transform(windows.rbegin(), windows.rend(), std::back_inserter(records),
                   [](const WindowRecord& record) { return &record; });
    std::ranges::stable_sort(records, {}, ageOf);
    return records;
}

} // namespace hollowfernpike::x11
