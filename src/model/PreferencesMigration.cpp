#include "model/PreferencesMigration.h"

#include <algorithm>
#include <array>
#include <map>

namespace hollowfernpike::PreferencesMigration {

namespace {

using Settings = std::map<std::string, platform::PropertyValue>;

constexpr std::string_view marker = "preferencesMigratedFrom";

constexpr std::array<std::string_view, 8> excludedKeyPrefixes{
    "NSWindow", "NSSplitView",      "NSToolbar",    "NSNav",
    "NSOSP",    "ApplePersistence", "NSStatusItem", "com.apple.",
};

bool isExcluded(std::string_view key) {
    return std::ranges::any_of(excludedKeyPrefixes,
                               [key](auto prefix) { return key.starts_with(prefix); });
}

Settings settingsOf(platform::UserDefaults& defaults, std::string_view domain) {
    auto settings = defaults.persistentDomainForName(domain).value_or(Settings{});
    std::erase_if(settings,
                  [](const Settings::value_type& entry) { return isExcluded(entry.first); });
    return settings;
}

void copyMissing(const Settings& source, platform::UserDefaults& target) {
    for (const auto& [key, value] : source) {
        if (!target.objectForKey(key).has_value()) {
            target.setObject(value, key);
        }
    }
}

} // namespace

std::optional<std::string> run(platform::UserDefaults& into,
                               std::span<const std::string_view> previous) {
    if (into.stringForKey(marker)) {
        return std::nullopt;
    }
    for (const std::string_view domain : previous) {
        const Settings source = settingsOf(into, domain);
        if (!source.empty()) {
            copyMissing(source, into);
            into.setString(domain, marker);
            return std::string{domain};
        }
    }
    into.setString("", marker);
    return std::nullopt;
}

} // namespace hollowfernpike::PreferencesMigration
