#include "model/ShortcutStore.h"
#include "ui/editor/EditorSheetTest.h"

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::IsEmpty;
using testing::SizeIs;
using namespace test;
using EditorSavingTest = EditorSheetTest;

TEST_F(EditorSavingTest, MakesANewShortcut) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    record(sheet, 0, 0x100000 | 0x10000);
    saveButton(sheet).click();
    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_NE(saved_[0].id, UUID());
    expectExampleSaved(0, 0x100000);
    EXPECT_FALSE(isOpen());
}

TEST_F(EditorSavingTest, EveryNewShortcutHasAnIdentifierOfItsOwn) {
    for (int count = 0; count < 2; ++count) {
        auto& sheet = open();
        choose(sheet, exampleApp);
        record(sheet, 0, 0x100000);
        sheet.saveSheet();
    }
    ASSERT_THAT(saved_, SizeIs(2));
    EXPECT_NE(saved_[0].id, saved_[1].id);
}

TEST_F(EditorSavingTest, TheCombinationOfTheNewShortcutIsNotCalledTaken) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    record(sheet, 0, 0x100000);
    const auto* notice = sheet.findChild<QWidget*>("noticeLabel");
    ASSERT_NE(notice, nullptr);
    bool isTold = true;
    sheet.onSave = [&](const AppShortcut& shortcut) {
        ShortcutStore::shared().add(shortcut);
        isTold = notice->isVisible();
    };
    sheet.saveSheet();
    EXPECT_FALSE(isTold);
}

TEST_F(EditorSavingTest, AnUntouchedShortcutIsSavedAsItWas) {
    open(mailShortcut()).saveSheet();
    expectSaved(mailShortcut());
}

TEST_F(EditorSavingTest, ARecordedCombinationReplacesTheEditedOne) {
    auto& sheet = open(mailShortcut());
    record(sheet, 11, 0x80000);
    sheet.saveSheet();
    expectSaved(mailShortcutOn(11, 0x80000));
}

TEST_F(EditorSavingTest, TheLastOfSeveralRecordedCombinationsIsSaved) {
    auto& sheet = open(mailShortcut());
    record(sheet, 0, 0x100000);
    record(sheet, 11, 0x20000);
    sheet.saveSheet();
    expectSaved(mailShortcutOn(11, 0x20000));
}

TEST_F(EditorSavingTest, ARecordingThatIsCalledOffKeepsTheEditedCombination) {
    auto& sheet = open(mailShortcut());
    record(sheet, 53, 0x100000);
    sheet.saveSheet();
    expectSaved(mailShortcut());
}

TEST_F(EditorSavingTest, AnotherApplicationKeepsTheEditedCombination) {
    auto& sheet = open(mailShortcut());
    choose(sheet, exampleApp);
    sheet.saveSheet();
    expectSaved(mailShortcutFor(exampleApp, "Example", "com.example.example"));
}

TEST_F(EditorSavingTest, WhatCannotBeOpenedKeepsTheEditedIdentifier) {
    auto& sheet = open(mailShortcut());
    choose(sheet, brokenApp);
    sheet.saveSheet();
    expectSaved(mailShortcutFor(brokenApp, "Broken", "com.example.mail"));
}

TEST_F(EditorSavingTest, WhatCannotBeOpenedKeepsTheIdentifierOfAnEarlierChoice) {
    auto& sheet = open(mailShortcut());
    choose(sheet, exampleApp);
    choose(sheet, brokenApp);
    sheet.saveSheet();
    expectSaved(mailShortcutFor(brokenApp, "Broken", "com.example.example"));
}

TEST_F(EditorSavingTest, CancellingThePanelChangesNothing) {
    auto& sheet = open(mailShortcut());
    find<QPushButton>(selectApp(sheet), "cancelButton").click();
    turn();
    EXPECT_EQ(shownName(sheet), "Post");
    sheet.saveSheet();
    expectSaved(mailShortcut());
}

TEST_F(EditorSavingTest, CancellingTellsNobody) {
    auto& sheet = open(mailShortcut());
    find<QPushButton>(sheet, "cancelButton").click();
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(EditorSavingTest, TheCloseButtonTellsNobody) {
    open(mailShortcut()).close();
    turn();
    EXPECT_TRUE(sheet_.expired());
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(EditorSavingTest, SavesWithoutAnybodyToTell) {
    auto& sheet = open(mailShortcut());
    sheet.onSave = nullptr;
    sheet.saveSheet();
    EXPECT_FALSE(isOpen());
}

TEST_F(EditorSavingTest, HandsOverBeforeItCloses) {
    auto& sheet = open(mailShortcut());
    bool wasOpen = false;
    sheet.onSave = [&](const AppShortcut&) { wasOpen = isOpen(); };
    sheet.saveSheet();
    EXPECT_TRUE(wasOpen);
    EXPECT_FALSE(isOpen());
}

constexpr auto combinationMissing = "ショートカットキーを記録してください";
constexpr auto applicationMissing = "起動するアプリを選択してください";

class EditorRefusalsTest : public EditorSheetTest {
protected:
    /// Tries to save, which must fail with this message alone, and answers it.
    void expectRefusal(AddEditShortcutSheet& sheet, const QString& message) {
        const auto entered = textsAndStates(sheet);
        sheet.saveSheet();
        ASSERT_THAT(sheet.findChildren<QMessageBox*>(), SizeIs(1));
        EXPECT_EQ(alertOn(sheet)->text(), message);
        alertOn(sheet)->buttons().front()->click();
        turn();
        EXPECT_THAT(sheet.findChildren<QMessageBox*>(), IsEmpty());
        EXPECT_THAT(saved_, IsEmpty());
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(textsAndStates(sheet), entered) << "what was entered stays";
    }

    /// What the window holds and lets do.
    static QStringList textsAndStates(AddEditShortcutSheet& sheet) {
        QStringList all{shownName(sheet), find<FittingLabel>(sheet, "displayLabel").text()};
        for (const char* name : {"selectButton", "recordButton", "saveButton", "cancelButton"}) {
            all += find<QPushButton>(sheet, name).isEnabled() ? "enabled" : "disabled";
        }
        const auto& recorder = sheet.keyRecorder();
        all += QString::number(recorder.capturedKeyCode().value_or(0xFFFF));
        all += QString::number(recorder.capturedModifierFlags().value_or(0xFFFF));
        return all;
    }
};

TEST_F(EditorRefusalsTest, WithoutACombinationAsksForOne) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    expectRefusal(sheet, combinationMissing);
    record(sheet, 0, 0x100000);
    sheet.saveSheet();
    expectExampleSaved(0, 0x100000);
}

TEST_F(EditorRefusalsTest, WithoutAnApplicationAsksForOne) {
    auto& sheet = open();
    record(sheet, 0, 0x100000);
    expectRefusal(sheet, applicationMissing);
    EXPECT_EQ(sheet.keyRecorder().capturedKeyCode(), 0);
    EXPECT_EQ(sheet.keyRecorder().capturedModifierFlags(), 0x100000U);
    EXPECT_EQ(find<FittingLabel>(sheet, "displayLabel").text(), "⌘A");
    EXPECT_EQ(shownName(sheet), "");
}

TEST_F(EditorRefusalsTest, WithNeitherAsksForTheCombinationOnly) {
    expectRefusal(open(), combinationMissing);
}

TEST_F(EditorRefusalsTest, AnApplicationWithoutIdentifierCannotBeSaved) {
    auto& sheet = open(mailShortcut());
    choose(sheet, namelessApp);
    expectRefusal(sheet, applicationMissing);
}

TEST_F(EditorRefusalsTest, WhatCannotBeOpenedHasNoIdentifierIfThereWasNone) {
    auto& sheet = open();
    choose(sheet, brokenApp);
    record(sheet, 0, 0x100000);
    expectRefusal(sheet, applicationMissing);
}

TEST_F(EditorRefusalsTest, APathWithoutANameShowsAsUnknownAndCannotBeSaved) {
    auto& sheet = open(mailShortcut());
    choose(sheet, "/");
    EXPECT_EQ(shownName(sheet), "不明");
    expectRefusal(sheet, applicationMissing);
}

TEST_F(EditorRefusalsTest, WhatIsMissingCanBeMadeGoodAfterTheAlert) {
    auto& sheet = open();
    choose(sheet, namelessApp);
    record(sheet, 46, 0x110000);
    expectRefusal(sheet, applicationMissing);
    choose(sheet, exampleApp);
    sheet.saveSheet();
    expectExampleSaved(46, 0x100000);
}

TEST_F(EditorRefusalsTest, TheAlertWarnsWithOneButtonAndWithoutDetails) {
    auto& sheet = open();
    sheet.saveSheet();
    QMessageBox* alert = alertOn(sheet);
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->icon(), QMessageBox::Warning);
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    EXPECT_EQ(alert->informativeText(), "");
    ASSERT_THAT(alert->buttons(), SizeIs(1));
    EXPECT_EQ(alert->buttons().front()->text(), "OK");
}

} // namespace
} // namespace hollowfernpike
