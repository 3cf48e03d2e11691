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

} // namespace
} // namespace hollowfernpike
