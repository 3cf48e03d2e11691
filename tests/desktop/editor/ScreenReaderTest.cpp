#include "desktop/editor/EditorStory.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

/// Somebody who uses the windows over the accessibility bus alone. Only combinations are pressed.
class ScreenReaderTest : public testing::Test {
protected:
    const Combination first{37, control | option};
    const Combination second{38, command};

    EditorStory story;
    ScreenReader& reader = story.reader;
    Application& quartz = story.open("Quartz");
    Application& feldspar = story.open("Feldspar");

    void SetUp() override {
        story.start();
        story.openManagement();
    }

    Accessible window() { return reader.find("frame", story.titles.management); }
    Accessible dialog(std::string_view title) { return reader.find("dialog", title); }

    void press(const Accessible& whole, std::string_view button) {
        const auto found = reader.find(whole, "push button", button);
        ASSERT_TRUE(waitUntil([&] { return reader.isEnabled(found); })) << button;
        reader.press(found);
    }

    /// Begins a new shortcut; its editor.
    Accessible add() {
        press(window(), "+ ショートカット追加");
        return dialog(story.titles.adding);
    }

    /// Begins to choose an application; the panel.
    Accessible select(const Accessible& editor) {
        press(editor, "アプリを選択...");
        return dialog(story.titles.applications);
    }

    void record(const Accessible& editor, const Combination& combination) {
        press(editor, "記録");
        reader.find(editor, "push button", "停止");
        story.strike(combination);
        reader.find(editor, "label", shown(combination));
        const auto recorder = reader.find(editor, "panel", "ショートカットキー");
        EXPECT_EQ(reader.description(recorder), shown(combination));
        EXPECT_TRUE(waitUntil([&] { return reader.isFocused(recorder); }));
    }

    /// Types its name into the search, which must select it.
    void search(const Accessible& panel, const Application& application) {
        const auto field = reader.find(panel, "text", "検索");
        EXPECT_TRUE(waitUntil([&] { return reader.isFocused(field); }));
        reader.write(field, application.name());
        EXPECT_EQ(reader.text(field), application.name());
        EXPECT_TRUE(
            waitUntil([&] { return reader.hasSelected(panel, "list item", application.name()); }));
    }

    /// Opens the selected application, which must be this one, records and saves.
    void finish(const Accessible& editor, const Accessible& panel, const Application& application,
                const Combination& combination) {
        press(panel, "開く");
        reader.find(editor, "label", application.name());
        record(editor, combination);
        press(editor, "保存");
        card(application, combination);
    }

    /// Makes a whole shortcut.
    void make(const Application& application, const Combination& combination) {
        const auto editor = add();
        const auto panel = select(editor);
        search(panel, application);
        finish(editor, panel, application, combination);
    }

    /// The card that names this application and this combination.
    Accessible card(const Application& application, const Combination& combination) {
        return reader.find(window(), "panel", application.name() + " " + shown(combination));
    }
};

TEST_F(ScreenReaderTest, AddsAShortcutByTypingIntoTheSearch) {
    make(quartz, first);
    EXPECT_TRUE(story.saves({{quartz, first}}));
    EXPECT_TRUE(story.brings(quartz, story.front, first));
}

TEST_F(ScreenReaderTest, AddsAShortcutByChoosingARow) {
    const auto editor = add();
    const auto panel = select(editor);
    const auto row = reader.find(reader.find(panel, "list", "アプリ"), "list item", quartz.name());
    ASSERT_FALSE(reader.isSelected(row));
    reader.act(row, "Toggle");
    EXPECT_TRUE(waitUntil([&] { return reader.isSelected(row); }));
    finish(editor, panel, quartz, first);
    EXPECT_TRUE(story.saves({{quartz, first}}));
    EXPECT_TRUE(story.brings(quartz, story.front, first));
}

TEST_F(ScreenReaderTest, EditsAndDeletesAShortcutByItsCard) {
    make(quartz, first);
    make(feldspar, second);
    press(card(quartz, first), "編集");
    const auto editor = dialog(story.titles.editing);
    record(editor, third);
    press(editor, "保存");
    EXPECT_TRUE(story.saves({{quartz, third}, {feldspar, second}}));
    press(card(feldspar, second), "削除");
    press(reader.find("alert message", "「Feldspar」のショートカットを削除しますか？"), "削除");
    EXPECT_TRUE(story.saves({{quartz, third}}));
}

TEST_F(ScreenReaderTest, HearsWhatIsMissing) {
    const auto editor = add();
    EXPECT_FALSE(reader.isEnabled(reader.find(editor, "push button", "保存")));
    const auto panel = select(editor);
    reader.write(reader.find(panel, "text", "検索"), "nothing of this name");
    reader.find(panel, "label", "一致するアプリがありません");
    EXPECT_FALSE(reader.isEnabled(reader.find(panel, "push button", "開く")));
    press(panel, "キャンセル");
    EXPECT_TRUE(waitUntil([&] { return !reader.isShown(panel); }));
    press(editor, "キャンセル");
    EXPECT_TRUE(waitUntil([&] { return !reader.isShown(editor); }));
    EXPECT_EQ(story.list(), json::array());
}

TEST_F(ScreenReaderTest, CanDoNothingWithAnEditorBeforeItsPanelIsAnswered) {
    make(quartz, first);
    const auto before = story.list();
    press(card(quartz, first), "編集");
    const auto editor = dialog(story.titles.editing);
    const auto panel = select(editor);
    for (const char* button : {"アプリを選択...", "記録", "保存", "キャンセル"}) {
        press(editor, button);
    }
    press(panel, "キャンセル"); // arrives after the other presses
    EXPECT_TRUE(waitUntil([&] { return !reader.isShown(panel); }));
    EXPECT_TRUE(reader.isShown(editor));
    reader.find(editor, "push button", "記録");
    for (const auto window : story.pager.stacking()) {
        EXPECT_NE(story.pager.titleOf(window), story.titles.applications);
    }
    press(editor, "キャンセル");
    EXPECT_TRUE(waitUntil([&] { return !reader.isShown(editor); }));
    EXPECT_EQ(story.list(), before);
}

TEST_F(ScreenReaderTest, FindsNoControlWithoutAName) {
    make(quartz, first);
    press(card(quartz, first), "編集");
    const auto editor = dialog(story.titles.editing);
    const auto panel = select(editor);
    reader.write(reader.find(panel, "text", "検索"), "quar");
    reader.find(panel, "push button", "消去");
    for (const auto& whole : {window(), editor, panel}) {
        for (const auto& part : reader.partsOf(whole)) {
            EXPECT_FALSE(part.name.empty() && !reader.actions(part).empty())
                << part.role << " in " << whole.name;
        }
    }
}

} // namespace
} // namespace hollowfernpike
