#include "desktop/ShortcutList.h"

#include "support/WriteFile.h"

#include <array>
#include <cstddef>
#include <cstdio>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

namespace {

std::string numberedIdentifier(std::size_t number) {
    std::array<char, 37> text{};
    std::snprintf(text.data(), text.size(), "00000000-0000-4000-8000-%012zX", number);
    return text.data();
}

} // namespace

void ShortcutList::add(const Combination& combination, const ShortcutTarget& target) {
    entries_.push_back({combination, target});
}

void ShortcutList::add(const Combination& combination, const Application& application) {
    add(combination, ShortcutTarget{.path = application.entry(),
                                    .name = application.name(),
                                    .identifier = application.identifier()});
}

std::filesystem::path ShortcutList::fileIn(const std::filesystem::path& dataHome) {
    return dataHome / "Hollowfernpike" / "shortcuts.json";
}

void ShortcutList::write(const std::filesystem::path& file) const {
    auto list = nlohmann::json::array();
    for (const auto& [combination, target] : entries_) {
        list.push_back({{"id", numberedIdentifier(list.size())},
                        {"keyCode", combination.keyCode},
                        {"modifierFlags", combination.modifierFlags},
                        {"appPath", target.path},
                        {"appName", target.name},
                        {"appBundleIdentifier", target.identifier}});
    }
    writeFile(file, list.dump());
}

} // namespace hollowfernpike::test
