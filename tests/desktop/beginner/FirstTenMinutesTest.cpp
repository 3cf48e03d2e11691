#include "desktop/beginner/FontSettings.h"
#include "desktop/beginner/Means.h"
#include "desktop/beginner/OwnEntry.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike {
namespace {

using namespace test;

/// Somebody who has just installed the program and uses one means alone, besides striking the
/// combinations, setting the font and logging out.
class FirstTenMinutesTest : public testing::TestWithParam<std::string> {
protected:
    EditorStory story;
    const std::unique_ptr<Means> means = makeMeans(GetParam(), story);
    Application& quartz = story.install("Quartz");
    Application& feldspar = story.install("Feldspar");
    Application& obsidian = story.install("Obsidian");
    const std::filesystem::path authority = story.authority("authority", "untrusted");
    const Combination first{37, control | option};
    const Combination second{38, command};
    bool isTrusted = false;

    const char* in(const char* japanese, const char* english) const {
        return story.titles.management == englishTitles.management ? english : japanese;
    }

    Accessible window() { return story.reader.find("frame", story.titles.management); }
    Accessible dialog(std::string_view title) { return story.reader.find("dialog", title); }

    void press(const Accessible& whole, std::string_view name) {
        const auto button = story.reader.find(whole, "push button", name);
        story.require([&] { return story.reader.isEnabled(button); },
                      std::string(name) + " is disabled");
        means->press(button);
    }

    void chooseRow(const Accessible& panel, std::string_view role, const std::string& name) {
        means->choose(story.reader.find(panel, role, name));
    }

    void bringForward(std::string_view title) {
        const auto window = story.pager.windowCalled(title);
        story.require([&] { return window != XCB_NONE; }, std::string(title) + " is not there");
        const auto hasKeys = [&] {
            return story.pager.activeWindow() == window && story.pager.focusedWindow() == window;
        };
        // It may get the keys by itself, because another window has gone, and lose them to a switch
        // that was asked for in the meantime.
        const auto keepsKeys = [&] {
            return waitUntil(hasKeys, 1s) && !waitUntil([&] { return !hasKeys(); }, 300ms);
        };
        const auto comes = [&] {
            if (keepsKeys()) {
                return true;
            }
            means->askForFront(window, isTrusted);
            return keepsKeys();
        };
        story.require(comes, std::string(title) + " does not get the keys");
    }

    Accessible beginToAdd(const Application& application) {
        bringForward(story.titles.management);
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

    /// Records a combination that is live. Its application comes forward meanwhile and on a busy
    /// machine may end the recording first; then people record once more.
    void recordTaken(const Accessible& editor, const Combination& combination,
                     std::string_view notice) {
        const auto isTold = [&] {
            bringForward(story.titles.adding);
            record(editor, combination);
            return waitUntil(
                [&] {
                    return std::ranges::any_of(
                        story.reader.partsOf(editor),
                        [&](const Accessible& part) { return part.name == notice; });
                },
                patience / 4);
        };
        story.require(isTold, "nobody is told: " + std::string(notice));
    }

    void save(const Accessible& editor, const std::vector<KnownShortcut>& list) {
        press(editor, in("保存", "Save"));
        EXPECT_TRUE(story.saves(list));
    }

    void startWithoutPermission() {
        means->startPanel();
        setFont(story.desktop, 10);
        story.launchUtility(changed(withFontSettings, {{"XAUTHORITY", authority.string()}}),
                            argumentsInEntry());
        for (const auto title : {story.titles.management, story.titles.alert}) {
            story.require([&] { return story.pager.windowCalled(title) != XCB_NONE; },
                          std::string(title) + " does not come");
            bringForward(title); // both ask for the keys at first
        }
        const auto prompt = story.pager.windowCalled(story.titles.alert);
        press(story.reader.find("alert message", "ショートカットキーを検出できません"), "OK");
        story.goes(prompt);
        std::filesystem::rename(story.authority("better", "trusted"), authority);
        story.require([this] { return story.pager.clients(story.utility().pid()) > 2; },
                      "it does not begin to listen");
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
        recordTaken(editor, second, "この組み合わせは「Feldspar」で使われています");
        ASSERT_TRUE(story.isInFront(feldspar)) << "its combination is live while it is recorded";
        bringForward(story.titles.adding);
        record(editor, third);
        story.reader.find(editor, "label", shown(third));
        save(editor, {{quartz, first}, {feldspar, second}, {obsidian, third}});
    }

    void exportList() {
        bringForward(story.titles.management);
        press(window(), in("エクスポート", "Export"));
        const auto panel = story.comes(story.titles.exporting);
        press(dialog(story.titles.exporting), in("保存(S)", "Save"));
        story.goes(panel);
    }

    /// While the window is open.
    void changeTheFont() {
        bringForward(story.titles.management);
        const auto name = story.reader.find(window(), "label", "Quartz");
        const auto before = story.reader.placeOf(name).height;
        setFont(story.desktop, 16);
        EXPECT_TRUE(waitUntil([&] {
            const auto grown = story.reader.find(window(), "label", "Quartz");
            return story.reader.placeOf(grown).height > before;
        }));
    }

    /// Logs out and in. From now on it is a client that the display has trusted from the beginning,
    /// which trays of the older kind show, and it starts without a window.
    void startAnew() {
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0);
        means->startPanel();
        story.start(withFontSettings);
        isTrusted = true;
        means->panelShowsSymbol();
    }

    void switchTheLanguage() {
        means->chooseEnglish();
        story.titles = englishTitles;
    }

    void openWindow() {
        means->chooseManage();
        story.managementComes();
    }

    void quit() {
        means->chooseQuit();
        EXPECT_EQ(story.utility().wait(), 0);
    }

    void deleteFirst() {
        bringForward(story.titles.management);
        press(story.reader.find(window(), "panel", "Quartz " + shown(first)), "Delete");
        story.comes(story.titles.alert);
        press(story.reader.find("alert message", "Delete shortcut for \"Quartz\"?"), "Delete");
        EXPECT_TRUE(story.saves({{feldspar, second}, {obsidian, third}}));
    }

    void restore() {
        bringForward(story.titles.management);
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
                         testing::Values("keyboard", "mouse", "accessibilityBus"),
                         [](const auto& means) { return means.param; });

TEST_P(FirstTenMinutesTest, EndWithAListThatWorks) {
    ASSERT_NO_FATAL_FAILURE(startWithoutPermission());
    ASSERT_NO_FATAL_FAILURE(addThree());
    exportList();
    changeTheFont();
    startAnew();
    switchTheLanguage();
    openWindow();
    deleteFirst();
    restore();
    for (const auto& combination : {first, second, third}) {
        ASSERT_TRUE(story.isLive(story.grabOf(combination)));
    }
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
    EXPECT_TRUE(story.brings(obsidian, story.front, third));
    quit();
}

} // namespace
} // namespace hollowfernpike
