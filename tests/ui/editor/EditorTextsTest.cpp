#include "ui/editor/EditorSheetTest.h"

#include "support/TemporaryDirectory.h"
#include "ui/icons/FileIcons.h"
#include "ui/icons/IconView.h"
#include "ui/icons/ReadIcons.h"

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using namespace test;
using testing::UnorderedElementsAre;

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
    ASSERT_EQ(before.size(), 10) << "the title, five labels and four buttons";
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

constexpr auto mailApp = "/Applications/Mail.app";

/// The application's icon in the first step.
class EditorIconsTest : public EditorSheetTest {
protected:
    EditorIconsTest() {
        QIcon::setThemeName("no such theme");
        QIcon::setFallbackThemeName("");
        paint(mailApp, Qt::blue);
        paint(exampleApp, Qt::red);
        paint(brokenApp, Qt::green);
    }

    /// Gives the application an icon of this colour.
    void paint(const std::string& path, Qt::GlobalColor color) {
        const auto file = directory_.path() / (std::to_string(color) + ".png");
        QPixmap pixmap(64, 64);
        pixmap.fill(color);
        ASSERT_TRUE(pixmap.save(QString::fromStdString(file.string())));
        services_.applicationBundles.icons[path] = {.themeName = {}, .imageFile = file.string()};
    }

    /// The picture on the window, as it is painted.
    static QImage shownIcon(AddEditShortcutSheet& sheet) {
        auto& view = find<IconView>(sheet, "step1AppIconView");
        view.grab();
        awaitIcons();
        return view.grab().toImage();
    }

    static QColor shownColor(AddEditShortcutSheet& sheet) {
        const QImage image = shownIcon(sheet);
        return image.pixelColor(image.rect().center());
    }

    auto& asked() { return services_.applicationBundles.iconsAsked; }

    TemporaryDirectory directory_;
};

TEST_F(EditorIconsTest, IsThatOfTheEditedApplication) {
    EXPECT_EQ(shownColor(open(mailShortcut())), QColor(Qt::blue));
    EXPECT_THAT(asked(), UnorderedElementsAre(mailApp));
}

TEST_F(EditorIconsTest, IsThatOfTheChosenApplication) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    EXPECT_EQ(shownColor(sheet), QColor(Qt::red));
    EXPECT_THAT(asked(), UnorderedElementsAre(exampleApp));
}

TEST_F(EditorIconsTest, IsThatOfAnotherApplicationForTheEditedShortcut) {
    auto& sheet = open(mailShortcut());
    choose(sheet, exampleApp);
    EXPECT_EQ(shownColor(sheet), QColor(Qt::red));
    EXPECT_THAT(asked(), UnorderedElementsAre(exampleApp)) << "the other is not seen";
}

TEST_F(EditorIconsTest, IsThatOfTheFileWhereTheApplicationCannotBeOpened) {
    auto& sheet = open(mailShortcut());
    choose(sheet, brokenApp);
    EXPECT_EQ(shownColor(sheet), QColor(Qt::green));
    EXPECT_THAT(asked(), UnorderedElementsAre(brokenApp));
}

TEST_F(EditorIconsTest, IsTheGenericOneWhereThereIsNone) {
    auto& sheet = open(mailShortcut());
    choose(sheet, namelessApp);
    auto& view = find<IconView>(sheet, "step1AppIconView");
    const QImage shown = shownIcon(sheet);
    view.setIcon(genericApplicationIcon());
    EXPECT_EQ(shown, shownIcon(sheet));
}

TEST_F(EditorIconsTest, StaysWhenThePanelIsCancelled) {
    auto& sheet = open(mailShortcut());
    find<QPushButton>(selectApp(sheet), "cancelButton").click();
    turn();
    EXPECT_EQ(shownColor(sheet), QColor(Qt::blue));
    EXPECT_THAT(asked(), UnorderedElementsAre(mailApp));
}

} // namespace
} // namespace hollowfernpike
