#include "desktop/editor/EditorStory.h"

#include "model/KeyNames.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <array>
#include <utility>

namespace hollowfernpike::test {

namespace {

constexpr auto recorder = "ショートカットキー";

constexpr std::array<std::pair<std::uint64_t, std::string_view>, 4> modifierSymbols{{
    {control, "⌃"},
    {option, "⌥"},
    {shift, "⇧"},
    {command, "⌘"},
}};

} // namespace

Accessible EditorStory::part(std::string_view title, std::string_view role, std::string_view name) {
    return reader.find(reader.find("dialog", title), role, name);
}

void EditorStory::clickOn(const Accessible& part) {
    const auto isInPlace = [this] {
        const auto place = screen.placeOf(pager.activeWindow());
        return std::ranges::any_of(reader.windows(), [&](const Accessible& window) {
            return reader.placeOf(window) == place;
        });
    };
    require(isInPlace, "the window is not where the program has it");
    const auto middle = reader.middleOf(part);
    mouse.click(middle.x, middle.y);
}

void EditorStory::clickRecord(std::string_view title) {
    clickOn(part(title, "push button", "記録"));
    part(title, "push button", "停止");
}

void EditorStory::clickStop(std::string_view title) {
    clickOn(part(title, "push button", "停止"));
    part(title, "push button", "記録");
}

testing::AssertionResult EditorStory::recorderShows(std::string_view title, std::string_view text) {
    const auto view = part(title, "panel", recorder);
    if (waitUntil([&] { return reader.description(view) == text; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << reader.description(view) << " is not " << text;
}

testing::AssertionResult EditorStory::records(std::string_view title,
                                              const Combination& combination) {
    strike(combination);
    return recorderShows(title, shown(combination));
}

testing::AssertionResult EditorStory::saves(const std::vector<KnownShortcut>& shortcuts) {
    auto expected = nlohmann::json::array();
    const auto isSo = [&] {
        expected = nlohmann::json::array();
        for (const auto& [application, combination] : shortcuts) {
            expected.push_back(record(expected.size(), combination, application));
        }
        return list() == expected;
    };
    if (waitUntil(isSo)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << list().dump(2) << "\nis not\n" << expected.dump(2);
}

void EditorStory::rememberConnections() {
    connections_ = pager.clients(utility().pid());
}

testing::AssertionResult EditorStory::listensNoMore() {
    if (waitUntil([&] { return pager.clients(utility().pid()) == connections_; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << pager.clients(utility().pid()) << " connections, not " << connections_;
}

bool EditorStory::listens() {
    return pager.clients(utility().pid()) > connections_;
}

std::string shown(const Combination& combination) {
    std::string text;
    for (const auto& [flag, symbol] : modifierSymbols) {
        if ((combination.modifierFlags & flag) != 0) {
            text += symbol;
        }
    }
    return text + keyNames.at(combination.keyCode);
}

void EditorStoryTest::SetUp() {
    story.start();
    story.openManagement();
    story.add(quartz, bound);
    before = story.list();
    story.rememberConnections();
    story.openManagement();
}

} // namespace hollowfernpike::test
