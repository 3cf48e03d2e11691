#include "comparison/Contestant.h"

#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <csignal>
#include <stdexcept>

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

std::string shortcutList(const InstalledApplication& application) {
    const InstalledApplication missing{"/nonexistent.desktop", "Missing"};
    return nlohmann::json::array(
               {shortcut("00000000-0000-4000-8000-000000000001", combination, application),
                shortcut("00000000-0000-4000-8000-000000000002", interlude, missing)})
        .dump();
}

test::KeyGrab grabOf(const std::string& display) {
    return {test::KeyInjector{display}.keycode(combination.keyName()), combination.modifierState()};
}

} // namespace

Contestant ours(const test::PrivateDesktop& desktop, const InstalledApplication& application) {
    return {.name = "hollowfernpike",
            .file = desktop.dataHome() / "Hollowfernpike" / "shortcuts.json",
            .configuration = shortcutList(application),
            .arguments = {HFP_PROGRAM}};
}

Contestant sxhkd(const test::PrivateDesktop& desktop, const std::string& name,
                 const std::string& command) {
    const auto file = desktop.home() / "sxhkdrc";
    return {.name = name,
            .file = file,
            .configuration = "ctrl + alt + x\n    " + command + '\n',
            .arguments = {"sxhkd", "-c", file}};
}

Contestant xbindkeys(const test::PrivateDesktop& desktop, const std::string& name,
                     const std::string& command) {
    const auto file = desktop.home() / "xbindkeysrc";
    return {.name = name,
            .file = file,
            .configuration = '"' + command + "\"\n    Control + Alt + x\n",
            .arguments = {"xbindkeys", "--nodaemon", "--file", file}};
}

RunningContestant::RunningContestant(const test::PrivateDesktop& desktop,
                                     const Contestant& contestant)
    : prober_(desktop.display()), grab_(grabOf(desktop.display())) {
    test::writeFile(contestant.file, contestant.configuration);
    process_ = desktop.start(contestant.arguments);
    if (!test::waitUntil([this] { return holdsCombination(); })) {
        throw std::runtime_error(contestant.name +
                                 " does not get the combination: " + process_->errors());
    }
}

RunningContestant::~RunningContestant() {
    process_->signal(SIGTERM);
    static_cast<void>(process_->wait());
    static_cast<void>(test::waitUntil([this] { return !holdsCombination(); }));
}

bool RunningContestant::holdsCombination() {
    return prober_.areTaken({grab_});
}

} // namespace hollowfernpike::bench
