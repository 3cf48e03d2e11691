#include "ui/EditorSheetTest.h"
#include "ui/IconView.h"

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::IsEmpty;
using testing::SizeIs;
using namespace test;

class AddEditShortcutSheetTest : public WithEditorSheet<EditorTest> {
protected:
    AddEditShortcutSheetTest() {
        services_.applicationBundles.bundles["/Applications/Example.app"] = {"com.example.example"};
        services_.applicationBundles.bundles["/Applications/Nameless.app"] = {std::nullopt};
    }

    static QPushButton& saveButton(AddEditShortcutSheet& sheet) {
        return find<QPushButton>(sheet, "saveButton");
    }

    static QString shownName(AddEditShortcutSheet& sheet) {
        return find<FittingLabel>(sheet, "step1AppNameLabel").text();
    }

    static bool showsStep2(AddEditShortcutSheet& sheet) {
        return find<QWidget>(sheet, "step2Container").isVisible();
    }

    /// Saves and returns what came of it, answering a question that comes up.
    QString messageOnSave(AddEditShortcutSheet& sheet) {
        sheet.saveSheet();
        QMessageBox* alert = alertOn(sheet);
        QString message = alert == nullptr ? QString() : alert->text();
        if (alert != nullptr) {
            alert->buttons().front()->click();
            turn();
        }
        return message;
    }
};

TEST_F(AddEditShortcutSheetTest, AddingBeginsWithTheApplicationAlone) {
    auto& sheet = open();
    EXPECT_EQ(sheet.windowTitle(), "ショートカット追加");
    EXPECT_EQ(sheet.size(), QSize(400, 200));
    EXPECT_FALSE(showsStep2(sheet));
    EXPECT_FALSE(saveButton(sheet).isEnabled());
    EXPECT_EQ(shownName(sheet), "");
    EXPECT_TRUE(find<IconView>(sheet, "step1AppIconView").icon().isNull());
    EXPECT_FALSE(sheet.keyRecorder().capturedKeyCode());
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, EditingBeginsWithBothStepsFilled) {
    auto& sheet = open(mailShortcut());
    EXPECT_EQ(sheet.windowTitle(), "ショートカット編集");
    EXPECT_EQ(sheet.size(), QSize(400, 280));
    EXPECT_TRUE(showsStep2(sheet));
    EXPECT_TRUE(saveButton(sheet).isEnabled());
    EXPECT_EQ(shownName(sheet), "Post");
    EXPECT_FALSE(find<IconView>(sheet, "step1AppIconView").icon().isNull());
    EXPECT_EQ(sheet.keyRecorder().capturedKeyCode(), 46);
    EXPECT_EQ(find<FittingLabel>(sheet, "displayLabel").text(), "⌘M");
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, MakesANewShortcut) {
    auto& sheet = open();
    choose(sheet, "/Applications/Example.app");
    record(sheet, 0, 0x100000 | 0x10000);
    EXPECT_TRUE(saveButton(sheet).isEnabled());
    saveButton(sheet).click();

    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_NE(saved_[0].id, UUID());
    EXPECT_EQ(saved_[0].keyCode, 0);
    EXPECT_EQ(saved_[0].modifierFlags, 0x100000U);
    EXPECT_EQ(saved_[0].appPath, "/Applications/Example.app");
    EXPECT_EQ(saved_[0].appName, "Example");
    EXPECT_EQ(saved_[0].appBundleIdentifier, "com.example.example");
    EXPECT_FALSE(isOpen());
}

TEST_F(AddEditShortcutSheetTest, EveryNewShortcutHasAnIdentifierOfItsOwn) {
    for (int count = 0; count < 2; ++count) {
        auto& sheet = open();
        choose(sheet, "/Applications/Example.app");
        record(sheet, 0, 0x100000);
        sheet.saveSheet();
    }
    ASSERT_THAT(saved_, SizeIs(2));
    EXPECT_NE(saved_[0].id, saved_[1].id);
}

TEST_F(AddEditShortcutSheetTest, SavingAnUntouchedShortcutGivesAnEqualOne) {
    const AppShortcut edited = mailShortcut();
    open(edited).saveSheet();
    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_EQ(saved_[0].id, edited.id);
    EXPECT_EQ(saved_[0].keyCode, edited.keyCode);
    EXPECT_EQ(saved_[0].modifierFlags, edited.modifierFlags);
    EXPECT_EQ(saved_[0].appPath, edited.appPath);
    EXPECT_EQ(saved_[0].appName, edited.appName);
    EXPECT_EQ(saved_[0].appBundleIdentifier, edited.appBundleIdentifier);
}

TEST_F(AddEditShortcutSheetTest, ARecordedCombinationReplacesTheEditedOne) {
    auto& sheet = open(mailShortcut());
    record(sheet, 11, 0x80000);
    sheet.saveSheet();
    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_EQ(saved_[0].keyCode, 11);
    EXPECT_EQ(saved_[0].modifierFlags, 0x80000U);
    EXPECT_EQ(saved_[0].id, mailShortcut().id);
}

TEST_F(AddEditShortcutSheetTest, AnotherApplicationKeepsTheEditedCombination) {
    auto& sheet = open(mailShortcut());
    choose(sheet, "/Applications/Example.app");
    sheet.saveSheet();
    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_EQ(saved_[0].id, mailShortcut().id);
    EXPECT_EQ(saved_[0].keyCode, 46);
    EXPECT_EQ(saved_[0].modifierFlags, 0x110000U);
    EXPECT_EQ(saved_[0].appPath, "/Applications/Example.app");
    EXPECT_EQ(saved_[0].appName, "Example");
    EXPECT_EQ(saved_[0].appBundleIdentifier, "com.example.example");
}

TEST_F(AddEditShortcutSheetTest, ChoosingAnApplicationShowsItAndTheSecondStep) {
    auto& sheet = open();
    choose(sheet, "/Applications/Example.app");
    EXPECT_EQ(shownName(sheet), "Example");
    EXPECT_FALSE(find<IconView>(sheet, "step1AppIconView").icon().isNull());
    EXPECT_TRUE(showsStep2(sheet));
    EXPECT_FALSE(saveButton(sheet).isEnabled());
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, GrowsOnceAndKeepsItsTopEdge) {
    auto& sheet = open();
    const QRect grown(sheet.geometry().topLeft(), QSize(400, 280));
    for (const char* path : {"/Applications/Example.app", "/Applications/Nameless.app"}) {
        choose(sheet, path);
        EXPECT_EQ(sheet.geometry(), grown) << path;
    }
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, TheNameIsTheFileNameWithoutItsExtension) {
    auto& sheet = open();
    const std::vector<std::pair<std::string, QString>> names{
        {"/usr/share/applications/org.example.Maps.desktop", "org.example.Maps"},
        {"/Applications/Slash.app/", "Slash"},
        {"/Applications/plain", "plain"},
        {"/Applications/日本語の名前.app", "日本語の名前"},
    };
    for (const auto& [path, name] : names) {
        choose(sheet, path);
        EXPECT_EQ(shownName(sheet), name) << path;
    }
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, APathWithoutANameShowsAsUnknownAndCannotBeSaved) {
    auto& sheet = open(mailShortcut());
    choose(sheet, "/");
    EXPECT_EQ(shownName(sheet), "不明");
    EXPECT_EQ(messageOnSave(sheet), "起動するアプリを選択してください");
    EXPECT_THAT(saved_, IsEmpty());
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, WithoutACombinationAsksForOne) {
    auto& sheet = open();
    choose(sheet, "/Applications/Example.app");
    EXPECT_EQ(messageOnSave(sheet), "ショートカットキーを記録してください");
    EXPECT_THAT(saved_, IsEmpty());
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(shownName(sheet), "Example");
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, WithoutAnApplicationAsksForOne) {
    auto& sheet = open();
    record(sheet, 0, 0x100000);
    EXPECT_EQ(messageOnSave(sheet), "起動するアプリを選択してください");
    EXPECT_THAT(saved_, IsEmpty());
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(sheet.keyRecorder().capturedKeyCode(), 0);
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, WithNeitherAsksForTheCombinationOnly) {
    auto& sheet = open();
    EXPECT_EQ(messageOnSave(sheet), "ショートカットキーを記録してください");
    EXPECT_THAT(sheet.findChildren<QMessageBox*>(), IsEmpty());
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, AnApplicationWithoutIdentifierCannotBeSaved) {
    auto& sheet = open(mailShortcut());
    choose(sheet, "/Applications/Nameless.app");
    EXPECT_EQ(messageOnSave(sheet), "起動するアプリを選択してください");
    EXPECT_THAT(saved_, IsEmpty());
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, WhatCannotBeOpenedKeepsTheEarlierIdentifier) {
    auto& sheet = open(mailShortcut());
    choose(sheet, "/tmp/Broken.app");
    sheet.saveSheet();
    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_EQ(saved_[0].appPath, "/tmp/Broken.app");
    EXPECT_EQ(saved_[0].appName, "Broken");
    EXPECT_EQ(saved_[0].appBundleIdentifier, "com.example.mail");
}

TEST_F(AddEditShortcutSheetTest, WhatCannotBeOpenedHasNoIdentifierIfThereWasNone) {
    auto& sheet = open();
    choose(sheet, "/tmp/Broken.app");
    record(sheet, 0, 0x100000);
    EXPECT_EQ(messageOnSave(sheet), "起動するアプリを選択してください");
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, TheAlertWarnsWithOneButtonAndWithoutDetails) {
    auto& sheet = open();
    sheet.saveSheet();
    QMessageBox* alert = alertOn(sheet);
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->icon(), QMessageBox::Warning);
    EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
    EXPECT_EQ(alert->informativeText(), "");
    ASSERT_THAT(alert->buttons(), SizeIs(1));
    EXPECT_EQ(alert->buttons().front()->text(), "OK");
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, CancellingTellsNobody) {
    auto& sheet = open(mailShortcut());
    find<QPushButton>(sheet, "cancelButton").click();
    EXPECT_FALSE(isOpen());
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(AddEditShortcutSheetTest, TheCloseButtonCancels) {
    open(mailShortcut()).close();
    turn();
    EXPECT_TRUE(sheet_.expired());
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(AddEditShortcutSheetTest, CancellingThePanelChangesNothing) {
    auto& sheet = open(mailShortcut());
    find<QPushButton>(sheet, "selectButton").click();
    auto* panel = sheet.findChild<QDialog*>("applicationPanel");
    ASSERT_NE(panel, nullptr);
    find<QPushButton>(*panel, "cancelButton").click();
    turn();
    EXPECT_EQ(shownName(sheet), "Post");
    sheet.saveSheet();
    ASSERT_THAT(saved_, SizeIs(1));
    EXPECT_EQ(saved_[0].appPath, mailShortcut().appPath);
}

TEST_F(AddEditShortcutSheetTest, SavesWithoutAnybodyToTell) {
    auto& sheet = open(mailShortcut());
    sheet.onSave = nullptr;
    sheet.saveSheet();
    EXPECT_FALSE(isOpen());
}

TEST_F(AddEditShortcutSheetTest, HandsOverBeforeItCloses) {
    auto& sheet = open(mailShortcut());
    bool wasOpen = false;
    sheet.onSave = [&](const AppShortcut&) { wasOpen = isOpen(); };
    sheet.saveSheet();
    EXPECT_TRUE(wasOpen);
}

TEST_F(AddEditShortcutSheetTest, LivesWhileItIsShownAndGoesLater) {
    auto& sheet = open();
    EXPECT_FALSE(sheet_.expired());
    sheet.cancelSheet();
    EXPECT_FALSE(sheet_.expired());
    turn();
    EXPECT_TRUE(sheet_.expired());
}

TEST_F(AddEditShortcutSheetTest, IsTheOwnersWhileItIsNotShown) {
    auto sheet = AddEditShortcutSheet::make();
    const std::weak_ptr<AddEditShortcutSheet> weak = sheet;
    sheet.reset();
    EXPECT_TRUE(weak.expired());
}

TEST_F(AddEditShortcutSheetTest, OutlivesItsClosingWhileSomebodyHoldsIt) {
    const auto sheet = AddEditShortcutSheet::make(mailShortcut());
    sheet->show();
    sheet->close();
    turn();
    EXPECT_EQ(shownName(*sheet), "Post");
}

TEST_F(AddEditShortcutSheetTest, ClosesWhenTheProgramEnds) {
    open();
    QMetaObject::invokeMethod(qApp, "aboutToQuit");
    turn();
    EXPECT_TRUE(sheet_.expired());
}

TEST_F(AddEditShortcutSheetTest, ARecordingGoesOnAfterTheWindowIsGone) {
    auto& sheet = open(mailShortcut());
    const std::weak_ptr<KeyRecorderView> recorder = sheet.keyRecorder().weak_from_this();
    sheet.keyRecorder().toggleRecording();
    sheet.close();
    turn();
    ASSERT_TRUE(sheet_.expired());
    ASSERT_FALSE(recorder.expired());
    EXPECT_TRUE(services_.eventTaps.tap()->isEnabled());

    services_.eventTaps.tap()->press(0, 0x100000);
    services_.mainQueue.runDue();
    EXPECT_TRUE(recorder.expired());
    EXPECT_EQ(services_.eventTaps.tap(), nullptr);
    EXPECT_EQ(calls().back(), "application.setActivationPolicy accessory");
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(AddEditShortcutSheetTest, ALateCombinationOnlyEnablesAButtonThatNobodySees) {
    const auto sheet = AddEditShortcutSheet::make();
    sheet->show();
    sheet->keyRecorder().toggleRecording();
    sheet->close();
    services_.eventTaps.tap()->press(0, 0x100000);
    services_.mainQueue.runDue();
    EXPECT_TRUE(saveButton(*sheet).isEnabled());
    EXPECT_FALSE(sheet->isVisible());
}

TEST_F(AddEditShortcutSheetTest, SaveStaysEnabledOnceACombinationIsKnown) {
    auto& sheet = open();
    choose(sheet, "/Applications/Example.app");
    record(sheet, 0, 0x100000);
    sheet.keyRecorder().toggleRecording();
    EXPECT_TRUE(saveButton(sheet).isEnabled());
    sheet.keyRecorder().stopRecording();
    EXPECT_TRUE(saveButton(sheet).isEnabled());
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, StaysARegularApplicationAfterRecordingInItsWindow) {
    auto& sheet = open();
    services_.application.openWindows = {{.isVisible = true, .className = "QWidget"}};
    record(sheet, 0, 0x100000);
    EXPECT_THAT(calls(),
                testing::Not(testing::Contains("application.setActivationPolicy accessory")));
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, KeepsTheLanguageInWhichItWasOpened) {
    auto& sheet = open();
    speak(Language::english);
    EXPECT_EQ(sheet.windowTitle(), "ショートカット追加");
    sheet.saveSheet();
    EXPECT_EQ(alertOn(sheet)->text(), "Please record a shortcut key.");
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, CanBeClosedButNeitherMinimisedNorResized) {
    auto& sheet = open();
    const Qt::WindowFlags flags = sheet.windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_EQ(sheet.minimumSize(), sheet.maximumSize());
    sheet.cancelSheet();
}

TEST_F(AddEditShortcutSheetTest, EveryControlHasAnAccessibleName) {
    auto& sheet = open(mailShortcut());
    for (const QWidget* control : sheet.findChildren<QWidget*>()) {
        const auto* button = qobject_cast<const QAbstractButton*>(control);
        if (control->focusPolicy() != Qt::NoFocus) {
            EXPECT_FALSE(control->accessibleName().isEmpty() &&
                         (button == nullptr || button->text().isEmpty()))
                << control->objectName().toStdString();
        }
    }
    sheet.cancelSheet();
}

class AddEditShortcutSheetTexts : public WithEditorSheet<EditorInEachLanguage> {
protected:
    static QString textOf(AddEditShortcutSheet& sheet, const char* name) {
        const auto* button = sheet.findChild<QPushButton*>(name);
        return button != nullptr ? button->text() : find<QLabel>(sheet, name).text();
    }

    QString inLanguage(const char* japanese, const char* english) const {
        return GetParam() == Language::english ? english : japanese;
    }
};

TEST_P(AddEditShortcutSheetTexts, Window) {
    auto& sheet = open();
    EXPECT_EQ(sheet.windowTitle(), inLanguage("ショートカット追加", "Add Shortcut"));
    EXPECT_EQ(textOf(sheet, "step1Heading"),
              inLanguage("ステップ 1: アプリを選択", "Step 1: Select an App"));
    EXPECT_EQ(textOf(sheet, "selectButton"), inLanguage("アプリを選択...", "Select App..."));
    EXPECT_EQ(textOf(sheet, "step2Heading"),
              inLanguage("ステップ 2: ショートカットキーを記録", "Step 2: Record Shortcut Key"));
    EXPECT_EQ(textOf(sheet, "cancelButton"), inLanguage("キャンセル", "Cancel"));
    EXPECT_EQ(textOf(sheet, "saveButton"), inLanguage("保存", "Save"));
    sheet.cancelSheet();
}

TEST_P(AddEditShortcutSheetTexts, TitleWhenEditing) {
    auto& sheet = open(mailShortcut());
    EXPECT_EQ(sheet.windowTitle(), inLanguage("ショートカット編集", "Edit Shortcut"));
    sheet.cancelSheet();
}

TEST_P(AddEditShortcutSheetTexts, UnknownApplication) {
    auto& sheet = open();
    choose(sheet, "/");
    EXPECT_EQ(textOf(sheet, "step1AppNameLabel"), inLanguage("不明", "Unknown"));
    sheet.cancelSheet();
}

TEST_P(AddEditShortcutSheetTexts, ACombinationIsMissing) {
    auto& sheet = open();
    sheet.saveSheet();
    EXPECT_EQ(alertOn(sheet)->text(),
              inLanguage("ショートカットキーを記録してください", "Please record a shortcut key."));
    EXPECT_EQ(alertOn(sheet)->buttons().front()->text(), "OK");
    sheet.cancelSheet();
}

TEST_P(AddEditShortcutSheetTexts, AnApplicationIsMissing) {
    auto& sheet = open();
    record(sheet, 0, 0x100000);
    sheet.saveSheet();
    EXPECT_EQ(alertOn(sheet)->text(),
              inLanguage("起動するアプリを選択してください", "Please select an app to launch."));
    sheet.cancelSheet();
}

INSTANTIATE_TEST_SUITE_P(, AddEditShortcutSheetTexts,
                         testing::Values(Language::japanese, Language::english), nameOfLanguage);

} // namespace
} // namespace hollowfernpike
