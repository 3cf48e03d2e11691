#include "ui/editor/EditorSheetTest.h"

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using namespace test;

class EditorTextsTest : public WithEditorSheet<EditorInEachLanguage> {
protected:
    static QString textOf(AddEditShortcutSheet& sheet, const char* name) {
        const auto* button = sheet.findChild<QPushButton*>(name);
        return button != nullptr ? button->text() : find<QLabel>(sheet, name).text();
    }
};

TEST_P(EditorTextsTest, Window) {
    auto& sheet = open();
    EXPECT_EQ(sheet.windowTitle(), inLanguage("ショートカット追加", "Add Shortcut"));
    EXPECT_EQ(textOf(sheet, "step1Heading"),
              inLanguage("ステップ 1: アプリを選択", "Step 1: Select an App"));
    EXPECT_EQ(textOf(sheet, "selectButton"), inLanguage("アプリを選択...", "Select App..."));
    EXPECT_EQ(textOf(sheet, "step2Heading"),
              inLanguage("ステップ 2: ショートカットキーを記録", "Step 2: Record Shortcut Key"));
    EXPECT_EQ(textOf(sheet, "cancelButton"), inLanguage("キャンセル", "Cancel"));
    EXPECT_EQ(textOf(sheet, "saveButton"), inLanguage("保存", "Save"));
}

TEST_P(EditorTextsTest, TitleWhenEditing) {
    EXPECT_EQ(open(mailShortcut()).windowTitle(),
              inLanguage("ショートカット編集", "Edit Shortcut"));
}

TEST_P(EditorTextsTest, UnknownApplication) {
    auto& sheet = open();
    choose(sheet, "/");
    EXPECT_EQ(shownName(sheet), inLanguage("不明", "Unknown"));
}

TEST_P(EditorTextsTest, ACombinationIsMissing) {
    auto& sheet = open();
    sheet.saveSheet();
    EXPECT_EQ(alertOn(sheet)->text(),
              inLanguage("ショートカットキーを記録してください", "Please record a shortcut key."));
    EXPECT_EQ(alertOn(sheet)->buttons().front()->text(), "OK");
}

TEST_P(EditorTextsTest, AnApplicationIsMissing) {
    auto& sheet = open();
    record(sheet, 0, 0x100000);
    sheet.saveSheet();
    EXPECT_EQ(alertOn(sheet)->text(),
              inLanguage("起動するアプリを選択してください", "Please select an app to launch."));
}

INSTANTIATE_TEST_SUITE_P(, EditorTextsTest, testing::Values(Language::japanese, Language::english),
                         languageName);

using EditorLanguageTest = EditorSheetTest;

/// Everything that can be read in a window.
QStringList textsIn(const QWidget& window) {
    QStringList texts{window.windowTitle()};
    for (const auto* label : window.findChildren<QLabel*>()) {
        texts += label->text();
    }
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        texts += button->text();
    }
    return texts;
}

TEST_F(EditorLanguageTest, AnOpenWindowKeepsAllItsTexts) {
    auto& sheet = open(mailShortcut());
    const QStringList before = textsIn(sheet);
    ASSERT_EQ(before.size(), 9) << "the title, four labels and four buttons";
    speak(Language::english);
    services_.notificationCenter.post("languageDidChange");
    turn();
    EXPECT_EQ(textsIn(sheet), before);
}

TEST_F(EditorLanguageTest, LaterTextsAreInTheNewLanguage) {
    auto& sheet = open();
    speak(Language::english);
    services_.notificationCenter.post("languageDidChange");
    sheet.saveSheet();
    EXPECT_EQ(alertOn(sheet)->text(), "Please record a shortcut key.");
}

} // namespace
} // namespace hollowfernpike
