#include "desktop/wayland/KeyboardUserOnWayland.h"

#include "support/Strokes.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace hollowfernpike::test {

using nlohmann::json;

namespace {

constexpr int mostTabs = 20; // no window of ours has so many parts

} // namespace

KeyboardUserOnWayland::KeyboardUserOnWayland(const WindowWords& spoken,
                                             std::unique_ptr<WaylandStory> place)
    : WindowOnWaylandStory(std::move(place)), words(spoken) {
    writeFile(story.session().home() / ".config" / "app.hollowfernpike.Hollowfernpike.conf",
              std::string{"[General]\nAppLanguage="} + words.language + '\n');
}

Accessible KeyboardUserOnWayland::openManagement() {
    require(openWindow(std::string{words.titles.management}));
    return managementComes();
}

Accessible KeyboardUserOnWayland::managementComes() {
    return comes(words.titles.management, "frame", words.titles.management);
}

Accessible KeyboardUserOnWayland::dialogComes(std::string_view title) {
    return comes(title, "dialog", title);
}

Accessible KeyboardUserOnWayland::questionComes(std::string_view message) {
    return comes(words.titles.alert, "alert message", message);
}

Accessible KeyboardUserOnWayland::comes(std::string_view title, std::string_view role,
                                        std::string_view name) {
    require(isFocused(std::string{title}));
    auto window = reader.find(role, name);
    require([&] { return focusedIn(window).has_value(); },
            "no part of " + std::string{title} + " has the keys");
    return window;
}

std::optional<Accessible> KeyboardUserOnWayland::focusedIn(const Accessible& window) {
    const auto parts = reader.partsOf(window);
    const auto found = std::ranges::find_if(
        parts, [this](const Accessible& part) { return reader.isFocused(part); });
    return found == parts.end() ? std::nullopt : std::optional{*found};
}

Accessible KeyboardUserOnWayland::moveOn(const Accessible& window, const std::string& key) {
    const auto before = focusedIn(window);
    std::optional<Accessible> now;
    story.keyboard.strike({key});
    require(
        [&] {
            now = focusedIn(window);
            return now && now != before;
        },
        key + " does not move on in " + window.name);
    return *now;
}

void KeyboardUserOnWayland::press(const Accessible& window, std::string_view button) {
    const auto wanted = reader.find(window, "push button", button);
    auto focused = focusedIn(window);
    for (int tabs = 0; focused != wanted; ++tabs) {
        if (tabs == mostTabs) {
            throw std::runtime_error("the Tab key does not lead to " + wanted.name);
        }
        focused = moveOn(window);
    }
    story.keyboard.strike({"SPCE"});
}

void KeyboardUserOnWayland::choose(const Accessible& editor, const Application& application) {
    press(editor, words.select);
    const auto panel = dialogComes(words.titles.applications);
    for (const auto& keys : strokesFor(application.name())) {
        story.keyboard.strike(keys);
    }
    require([&] { return reader.hasSelected(panel, "list item", application.name()); },
            application.name() + " is not selected");
    strikeAndLeave(words.titles.applications, "RTRN");
    reader.find(editor, "label", application.name());
}

void KeyboardUserOnWayland::beginToRecordIn(std::string_view title) {
    const auto before = recordings();
    press(dialogComes(title), words.record);
    require(records(before));
}

void KeyboardUserOnWayland::beginToRecord() {
    press(managementComes(), words.edit);
    beginToRecordIn(words.titles.editing);
}

void KeyboardUserOnWayland::record(const Accessible& editor, const Combination& combination) {
    beginToRecordIn(editor.name);
    story.strike(combination);
    require(hasRecorded());
}

void KeyboardUserOnWayland::strikeAndLeave(std::string_view title, const std::string& key) {
    story.keyboard.strike({key});
    require(isGone(std::string{title}));
}

// Return is struck repeatedly: a list of completions that is open by then takes the first press.
void KeyboardUserOnWayland::enterPath(const Accessible& panel, const std::filesystem::path& file) {
    const auto field = focusedIn(panel).value();
    // Meanwhile the panel opens and closes a list of completions, which may lose a key on its way.
    const auto isTyped = [&] {
        story.keyboard.strike({"LCTL", "AC01"});
        for (const auto& keys : strokesFor(file.string())) {
            story.keyboard.strike(keys);
        }
        return waitUntil([&] { return reader.text(field) == file.string(); }, patience / 4);
    };
    require(isTyped, field.role + " has another text: " + reader.text(field));
    const auto isTaken = [&] {
        story.keyboard.strike({"RTRN"});
        return waitUntil([&] { return !hasWindow(panel.name); }, patience / 4);
    };
    require(isTaken, panel.name + " does not take the path");
}

testing::AssertionResult KeyboardUserOnWayland::listBecomes(const json& expected) {
    if (waitUntil([&] { return shortcutsIn(story.shortcutsFile()) == expected; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << shortcutsIn(story.shortcutsFile()).dump(2) << "\nis not\n"
                                       << expected.dump(2) << '\n'
                                       << story.utilityTells();
}

json KeyboardUserOnWayland::shortcut(const Combination& combination,
                                     const Application& application) {
    return {{"keyCode", combination.keyCode},
            {"modifierFlags", combination.modifierFlags},
            {"appPath", application.entry().string()},
            {"appName", application.name()},
            {"appBundleIdentifier", application.identifier()}};
}

void KeyboardUserOnWayland::require(const std::function<bool()>& condition,
                                    const std::string& what) {
    if (!waitUntil(condition)) {
        throw std::runtime_error(what + '\n' + story.utilityTells());
    }
}

void KeyboardUserOnWayland::require(const testing::AssertionResult& result) {
    if (!result) {
        throw std::runtime_error(result.message());
    }
}

json shortcutsIn(const std::filesystem::path& file) {
    std::ifstream stream(file);
    auto list = stream ? json::parse(stream) : json::array();
    for (auto& shortcut : list) {
        shortcut.erase("id");
    }
    return list;
}

} // namespace hollowfernpike::test
