#include "desktop/beginner/FontSettings.h"
#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"
#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike {
namespace {

using namespace test;

enum class Means { keyboard, mouse, accessibilityBus };

std::ostream& operator<<(std::ostream& stream, Means means) {
    switch (means) {
    case Means::keyboard:
        return stream << "keyboard";
    case Means::mouse:
        return stream << "mouse";
    case Means::accessibilityBus:
        return stream << "accessibilityBus";
    }
    return stream;
}

/// Somebody who has just installed the program and uses one means alone, besides striking the
/// combinations and choosing from the menu.
class FirstTenMinutesTest : public testing::TestWithParam<Means> {
protected:
    EditorStory story;
    StatusMenu menu{story.desktop};
    Application& quartz = story.install("Quartz");
    Application& feldspar = story.install("Feldspar");
    Application& obsidian = story.install("Obsidian");
    const std::filesystem::path authority = story.authority("authority", "untrusted");
    const Combination first{37, control | option};
    const Combination second{38, command};
    bool isEnglish = false;

    const char* in(const char* japanese, const char* english) const {
        return isEnglish ? english : japanese;
    }

    Accessible window() { return story.reader.find("frame", story.titles.management); }
    Accessible dialog(std::string_view title) { return story.reader.find("dialog", title); }

    void press(const Accessible& whole, std::string_view name) {
        const auto button = story.reader.find(whole, "push button", name);
        story.require([&] { return story.reader.isEnabled(button); },
                      std::string(name) + " is disabled");
        switch (GetParam()) {
        case Means::keyboard:
            focus(button);
            story.keyboard.strike({"SPCE"});
            break;
        case Means::mouse:
            click(button);
            break;
        case Means::accessibilityBus:
            story.reader.press(button);
            break;
        }
    }

    /// Clicks once the program knows where the window in front has been put.
    void click(const Accessible& part) {
        const auto isInPlace = [this] {
            const auto place = story.screen.placeOf(story.pager.activeWindow());
            return std::ranges::any_of(story.reader.windows(), [&](const Accessible& window) {
                return story.reader.placeOf(window) == place;
            });
        };
        story.require(isInPlace, "the window is not where the program has it");
        story.clickOn(part);
    }

    void focus(const Accessible& part) {
        constexpr int most = 60;
        for (int moves = 0; moves < most; ++moves) {
            if (waitUntil([&] { return story.reader.isFocused(part); },
                          std::chrono::milliseconds{200})) {
                return;
            }
            story.keyboard.strike({"TAB"});
        }
        throw std::runtime_error("the Tab key does not lead to " + part.name);
    }

    void chooseRow(const Accessible& panel, std::string_view role, const std::string& name) {
        const auto row = story.reader.find(panel, role, name);
        switch (GetParam()) {
        case Means::keyboard:
            show::type(story.keyboard, name);
            break;
        case Means::mouse:
            click(row);
            break;
        case Means::accessibilityBus:
            story.reader.act(row, "Toggle");
            break;
        }
    }

    /// Brought forward as a task bar does: a program that was started without the permission cannot
    /// ask for that itself.
    void openWindow() {
        const auto windows = [this] { return story.pager.stacking(); };
        const auto isThere = [&] {
            return std::ranges::any_of(windows(), [&](auto each) {
                return story.pager.titleOf(each) == story.titles.management;
            });
        };
        if (!isThere()) {
            story.run({HFP_PROGRAM});
            story.require(isThere, "the window does not come");
        }
        const auto management = windowCalled(story.titles.management);
        story.require([&] { return story.bringForward([&] { return std::vector{management}; }); },
                      "the window does not get the keys");
    }

    Accessible beginToAdd(const Application& application) {
        openWindow();
        press(window(), in("+ ショートカット追加", "+ Add Shortcut"));
        story.comes(story.titles.adding);
        auto editor = dialog(story.titles.adding);
        press(editor, in("アプリを選択...", "Select App..."));
        story.comes(story.titles.applications);
        const auto panel = dialog(story.titles.applications);
        chooseRow(panel, "list item", application.name());
        press(panel, in("開く", "Open"));
        story.comes(story.titles.adding);
        story.reader.find(editor, "label", application.name());
        return editor;
    }

    void record(const Accessible& editor, const Combination& combination) {
        press(editor, in("記録", "Record"));
        story.reader.find(editor, "push button", in("停止", "Stop"));
        story.strike(combination);
    }

    void save(const Accessible& editor, const std::vector<KnownShortcut>& list) {
        press(editor, in("保存", "Save"));
        EXPECT_TRUE(story.saves(list));
    }

    void startWithoutPermission() {
        menu.startHost();
        setFont(story.desktop, 10);
        story.launchUtility(changed(withFontSettings, {{"XAUTHORITY", authority.string()}}));
        const auto prompt = story.comes(story.titles.alert);
        press(story.reader.find("alert message", "ショートカットキーを検出できません"), "OK");
        story.goes(prompt);
        std::filesystem::rename(story.authority("better", "trusted"), authority);
        story.require([this] { return story.pager.clients(story.utility().pid()) > 2; },
                      "it does not begin to listen");
        ASSERT_TRUE(menu.showsItem());
    }

    void addThree() {
        auto editor = beginToAdd(quartz);
        record(editor, first);
        story.reader.find(editor, "label", shown(first));
        save(editor, {{quartz, first}});

        editor = beginToAdd(feldspar);
        record(editor, bareLetter);
        story.reader.find(editor, "label", text::includeAModifier);
        story.strike(second);
        story.reader.find(editor, "label", shown(second));
        save(editor, {{quartz, first}, {feldspar, second}});

        editor = beginToAdd(obsidian);
        record(editor, second);
        story.reader.find(editor, "label", "この組み合わせは「Feldspar」で使われています");
        ASSERT_TRUE(story.isInFront(feldspar)) << "its combination is live while it is recorded";
        const auto adding = windowCalled(story.titles.adding);
        ASSERT_TRUE(story.bringForward([&] { return std::vector{adding}; }));
        record(editor, third);
        story.reader.find(editor, "label", shown(third));
        save(editor, {{quartz, first}, {feldspar, second}, {obsidian, third}});
    }

    xcb_window_t windowCalled(std::string_view title) {
        for (const auto shownWindow : story.pager.stacking()) {
            if (story.pager.titleOf(shownWindow) == title) {
                return shownWindow;
            }
        }
        throw std::runtime_error("there is no " + std::string(title));
    }

    void exportList() {
        openWindow();
        press(window(), in("エクスポート", "Export"));
        const auto panel = story.comes(story.titles.exporting);
        press(dialog(story.titles.exporting), in("保存(S)", "Save"));
        story.goes(panel);
    }

    /// While the window is open.
    void changeTheFont() {
        openWindow();
        const auto name = story.reader.find(window(), "label", "Quartz");
        const auto before = story.reader.placeOf(name).height;
        setFont(story.desktop, 16);
        EXPECT_TRUE(waitUntil([&] {
            const auto grown = story.reader.find(window(), "label", "Quartz");
            return story.reader.placeOf(grown).height > before;
        }));
    }

    /// From now on as a client that the display has trusted from the beginning.
    void startAnew() {
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0);
        menu.startHost();
        story.start(withFontSettings);
        ASSERT_TRUE(menu.showsItem());
    }

    void switchTheLanguage() {
        menu.choose("English");
        isEnglish = true;
        story.titles = englishTitles;
        ASSERT_TRUE(menu.becomes("English", true));
    }

    void deleteFirst() {
        openWindow();
        press(story.reader.find(window(), "panel", "Quartz " + shown(first)), "Delete");
        story.comes(story.titles.alert);
        press(story.reader.find("alert message", "Delete shortcut for \"Quartz\"?"), "Delete");
        EXPECT_TRUE(story.saves({{feldspar, second}, {obsidian, third}}));
    }

    void restore() {
        openWindow();
        press(window(), "Import");
        story.comes(story.titles.importing);
        const auto panel = dialog(story.titles.importing);
        chooseRow(panel, "tree item", "Hollowfernpike.json");
        press(panel, "Open");
        story.comes(story.titles.alert);
        press(story.reader.find("alert message", "Import Shortcuts?"), "OK");
        EXPECT_TRUE(story.saves({{quartz, first}, {feldspar, second}, {obsidian, third}}));
    }
};

INSTANTIATE_TEST_SUITE_P(By, FirstTenMinutesTest,
                         testing::Values(Means::keyboard, Means::mouse, Means::accessibilityBus),
                         testing::PrintToStringParamName());

TEST_P(FirstTenMinutesTest, EndWithAListThatWorks) {
    ASSERT_NO_FATAL_FAILURE(startWithoutPermission());
    ASSERT_NO_FATAL_FAILURE(addThree());
    exportList();
    changeTheFont();
    ASSERT_NO_FATAL_FAILURE(startAnew());
    ASSERT_NO_FATAL_FAILURE(switchTheLanguage());
    deleteFirst();
    restore();
    for (const auto& combination : {first, second, third}) {
        ASSERT_TRUE(story.isLive(story.grabOf(combination)));
    }
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
    EXPECT_TRUE(story.brings(obsidian, story.front, third));
}

} // namespace
} // namespace hollowfernpike
