#include "comparison/Shortcuts.h"

#include "support/WriteFile.h"

#include <nlohmann/json.hpp>

namespace hollowfernpike::bench {

namespace {

nlohmann::json shortcut(const std::string& identifier, const test::Combination& keys,
                        const InstalledApplication& application) {
    return {{"id", identifier},
            {"keyCode", keys.keyCode},
            {"modifierFlags", keys.modifierFlags},
            {"appPath", application.entry},
            {"appName", application.name},
            {"appBundleIdentifier", application.name}};
}

} // namespace

InstalledApplication install(const std::filesystem::path& applications, const std::string& name,
                             const std::string& exec) {
    auto entry = applications / (name + ".desktop");
    test::writeFile(entry, "[Desktop Entry]\nType=Application\nName=" + name +
                               "\nStartupWMClass=" + name + "\nExec=" + exec + '\n');
    return {.entry = std::move(entry), .name = name};
}

std::filesystem::path shortcutsFile(const std::filesystem::path& dataHome) {
    return dataHome / "Hollowfernpike" / "shortcuts.json";
}

std::string shortcutList(const InstalledApplication& application) {
    const InstalledApplication missing{"/nonexistent.desktop", "Missing"};
    return nlohmann::json::array(
               {shortcut("00000000-0000-4000-8000-000000000001", combination, application),
                shortcut("00000000-0000-4000-8000-000000000002", interlude, missing)})
        .dump();
}

} // namespace hollowfernpike::bench
