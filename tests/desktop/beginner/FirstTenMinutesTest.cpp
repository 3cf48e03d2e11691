#include "desktop/beginner/FontSettings.h"
#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"
#include "show/Panel.h"
#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
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

/// What the program's desktop entry gives it on its command line.
std::vector<std::string> argumentsInEntry() {
    const std::string key = "Exec=@program@ ";
    std::ifstream entry(HFP_DESKTOP_ENTRY);
    std::vector<std::string> arguments;
    for (std::string line; arguments.empty() && std::getline(entry, line);) {
        if (line.starts_with(key)) {
            std::istringstream words(line.substr(key.size()));
            for (std::string word; words >> word;) {
                arguments.push_back(word);
            }
        }
    }
    return arguments;
}

/// Somebody who has just installed the program and uses one means alone, besides striking the
/// combinations, setting the font and logging out. The panel here opens its menu for the mouse
/// only, so it is clicked open, and pointed at, for those who then use the keys; and as the
/// accessibility bus brings no window forward, a task bar does.
class FirstTenMinutesTest : public testing::TestWithParam<Means> {
protected:
    EditorStory story;
    StatusMenu menu{story.desktop};
    std::optional<show::Panel> tray;
    Application& quartz = story.install("Quartz");
    Application& feldspar = story.install("Feldspar");
    Application& obsidian = story.install("Obsidian");
    const std::filesystem::path authority = story.authority("authority", "untrusted");
    const Combination first{37, control | option};
    const Combination second{38, command};
    bool isTrusted = false;
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
            story.clickOn(button);
            break;
        case Means::accessibilityBus:
            story.reader.press(button);
            break;
        }
    }

    void focus(const Accessible& part) {
        const auto isFocused = [&] { return story.reader.isFocused(part); };
        const auto comesThere = [&] {
            const bool isThere = waitUntil(isFocused, 200ms);
            if (!isThere) {
                story.keyboard.strike({"TAB"});
            }
            return isThere;
        };
        story.require(comesThere, "the Tab key does not lead to " + part.name);
    }

    void chooseRow(const Accessible& panel, std::string_view role, const std::string& name) {
        const auto row = story.reader.find(panel, role, name);
        switch (GetParam()) {
        case Means::keyboard:
            show::type(story.keyboard, name);
            break;
        case Means::mouse:
            story.clickOn(row);
            break;
        case Means::accessibilityBus:
            story.reader.act(row, "Toggle");
            break;
        }
    }

    bool isShown(std::string_view title) {
        return std::ranges::any_of(story.pager.stacking(), [&](auto window) {
            return story.pager.titleOf(window) == title;
        });
    }

    xcb_window_t windowCalled(std::string_view title) {
        for (const auto shownWindow : story.pager.stacking()) {
            if (story.pager.titleOf(shownWindow) == title) {
                return shownWindow;
            }
        }
        throw std::runtime_error("there is no " + std::string(title));
    }

    /// Clicks the title where no window above covers it.
    void clickTitle(xcb_window_t window) {
        constexpr int frame = 30; // and more
        constexpr int buttons = 100;
        const auto place = story.screen.placeOf(window);
        const auto stacked = story.pager.stacking();
        const auto above = std::ranges::find(stacked, window);
        const int y = place.y - frame / 3;
        for (int x = place.x + buttons; x < place.x + place.width - buttons; x += frame) {
            const auto covers = [&](xcb_window_t other) {
                const auto [left, top, width, height] = story.screen.placeOf(other);
                return other != window && x > left - frame && x < left + width + frame &&
                       y > top - frame && y < top + height + frame;
            };
            if (std::none_of(above, stacked.end(), covers)) {
                story.mouse.click(x, y);
                return;
            }
        }
    }

    /// Starts the program by its entry once more, or sends away what is in front.
    void comesByKeys() {
        if (isTrusted) {
            auto command = argumentsInEntry();
            command.insert(command.begin(), HFP_PROGRAM);
            story.run(command);
        } else {
            story.keyboard.strike({"LALT", "ESC"});
        }
    }

    /// A program that was started without the permission cannot ask for that itself.
    void bringForward(std::string_view title) {
        const auto window = windowCalled(title);
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
            switch (GetParam()) {
            case Means::keyboard:
                comesByKeys();
                break;
            case Means::mouse:
                clickTitle(window);
                break;
            case Means::accessibilityBus:
                story.pager.activate(window);
                break;
            }
            return keepsKeys();
        };
        story.require(comes, std::string(title) + " does not get the keys");
    }

    /// An entry of the menu, as each means finds it.
    struct Entry {
        std::string label;
        std::string letter;
        int place;            ///< separators left out
        int separatorsBefore; ///< this one
    };

    /// When the menu has become English.
    void choose(const Entry& entry) {
        switch (GetParam()) {
        case Means::keyboard:
            tray->openMenu();
            show::type(story.keyboard, entry.letter);
            break;
        case Means::mouse:
            tray->openMenu();
            click(entry);
            break;
        case Means::accessibilityBus:
            menu.choose(entry.label);
            break;
        }
    }

    /// In the open menu of the tray.
    void click(const Entry& entry) {
        constexpr int entries = 6;
        constexpr int separators = 2;
        constexpr int separator = 7; // about as high
        const auto [x, y, width, height] = story.screen.popups().at(0);
        const int step = (height - separators * separator) / entries;
        story.mouse.click(x + width / 4,
                          y + entry.separatorsBefore * separator + entry.place * step + step / 2);
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

    void save(const Accessible& editor, const std::vector<KnownShortcut>& list) {
        press(editor, in("保存", "Save"));
        EXPECT_TRUE(story.saves(list));
    }

    void startPanel() {
        if (GetParam() == Means::accessibilityBus) {
            menu.startHost();
        } else if (!tray) {
            tray.emplace(story, story, 1);
        }
    }

    void panelShowsItem() {
        if (GetParam() == Means::accessibilityBus) {
            ASSERT_TRUE(menu.showsItem());
        } else {
            tray->showsSymbol();
        }
    }

    void startWithoutPermission() {
        startPanel();
        setFont(story.desktop, 10);
        story.launchUtility(changed(withFontSettings, {{"XAUTHORITY", authority.string()}}),
                            argumentsInEntry());
        for (const auto title : {story.titles.management, story.titles.alert}) {
            story.require([&] { return isShown(title); }, std::string(title) + " does not come");
            bringForward(title); // both ask for the keys at first
        }
        const auto prompt = windowCalled(story.titles.alert);
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
        record(editor, second);
        story.reader.find(editor, "label", "この組み合わせは「Feldspar」で使われています");
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
        startPanel();
        story.start(withFontSettings);
        isTrusted = true;
        ASSERT_NO_FATAL_FAILURE(panelShowsItem());
    }

    void switchTheLanguage() {
        switch (GetParam()) {
        case Means::keyboard:
            tray->openMenu();
            tray->openLanguages();
            tray->chooseEnglish();
            break;
        case Means::mouse:
            tray->openMenu();
            click({"言語 / Language", "L", 3, 1});
            story.require([this] { return story.screen.popups().size() == 2; },
                          "the languages do not show");
            clickTheLastLanguage();
            break;
        case Means::accessibilityBus:
            menu.choose("English");
            break;
        }
        isEnglish = true;
        story.titles = englishTitles;
    }

    void clickTheLastLanguage() {
        const auto [x, y, width, height] = story.screen.popups().back();
        story.mouse.click(x + width / 2, y + 3 * height / 4);
    }

    void openWindow() {
        choose({"Manage Shortcuts", "m", 0, 0});
        story.managementComes();
    }

    void quit() {
        choose({"Quit", "q", 5, 2});
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
                         testing::Values(Means::keyboard, Means::mouse, Means::accessibilityBus),
                         testing::PrintToStringParamName());

TEST_P(FirstTenMinutesTest, EndWithAListThatWorks) {
    ASSERT_NO_FATAL_FAILURE(startWithoutPermission());
    ASSERT_NO_FATAL_FAILURE(addThree());
    exportList();
    changeTheFont();
    ASSERT_NO_FATAL_FAILURE(startAnew());
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
