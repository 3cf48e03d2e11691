#include "ui/editor/EditorSheetTest.h"

#include <QAccessible>
#include <QFileDialog>

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::IsEmpty;
using testing::SizeIs;
using namespace test;

void click(QPushButton& button) {
    button.click();
}

/// Presses it as over the accessibility bus.
void act(QPushButton& button) {
    auto* const actions = QAccessible::queryAccessibleInterface(&button)->actionInterface();
    actions->doAction(QAccessibleActionInterface::pressAction());
}

/// While a dialog is to be answered, the window under it is dead, however it is used.
class EditorSheetsTest : public EditorSheetTest {
protected:
    /// Uses every button of a window.
    void useAll(const QWidget& window, void (*use)(QPushButton&)) {
        held_ = sheet_.lock();
        for (const char* name : {"selectButton", "recordButton", "saveButton", "cancelButton",
                                 "otherButton", "openButton"}) {
            auto* const button = window.findChild<QPushButton*>(name);
            if (button != nullptr && button->window() == &window) {
                ASSERT_TRUE(button->isEnabled()) << name;
                use(*button);
                EXPECT_TRUE(eventually([&] { return !button->isDown(); }));
            }
        }
    }

    void expectNothingHappened(AddEditShortcutSheet& sheet) {
        EXPECT_THAT(sheet.findChildren<QDialog*>(), SizeIs(1));
        EXPECT_TRUE(isOpen());
        EXPECT_FALSE(sheet.keyRecorder().isRecording());
        EXPECT_EQ(services_.eventTaps.tap(), nullptr);
        EXPECT_THAT(saved_, IsEmpty());
    }

    /// Saves what cannot be saved.
    QMessageBox& openAlert(AddEditShortcutSheet& sheet) {
        choose(sheet, namelessApp);
        saveButton(sheet).click();
        return *alertOn(sheet);
    }

    /// A file panel on the panel of applications.
    static QFileDialog& openFiles(QDialog& panel) {
        find<QPushButton>(panel, "otherButton").click();
        return *panel.findChild<QFileDialog*>();
    }

    std::shared_ptr<AddEditShortcutSheet> held_; ///< the editor, alive even if it closes
};

TEST_F(EditorSheetsTest, ClicksUnderThePanelDoNothing) {
    auto& sheet = open(mailShortcut());
    selectApp(sheet);
    useAll(sheet, click);
    expectNothingHappened(sheet);
}

TEST_F(EditorSheetsTest, ActionsOfAssistiveTechnologyUnderThePanelDoNothing) {
    auto& sheet = open(mailShortcut());
    selectApp(sheet);
    useAll(sheet, act);
    expectNothingHappened(sheet);
}

TEST_F(EditorSheetsTest, ClicksUnderAnAlertDoNothing) {
    auto& sheet = open(mailShortcut());
    openAlert(sheet);
    useAll(sheet, click);
    expectNothingHappened(sheet);
}

TEST_F(EditorSheetsTest, ActionsOfAssistiveTechnologyUnderAnAlertDoNothing) {
    auto& sheet = open(mailShortcut());
    openAlert(sheet);
    useAll(sheet, act);
    expectNothingHappened(sheet);
}

TEST_F(EditorSheetsTest, ClicksUnderADialogBeforeAllWindowsDoNothing) {
    auto& sheet = open(mailShortcut());
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    services_.application.modal = true;
    useAll(sheet, click);
    EXPECT_THAT(sheet.findChildren<QDialog*>(), IsEmpty());
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(sheet.keyRecorder().isRecording());
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(EditorSheetsTest, ActionsUnderADialogBeforeAllWindowsDoNothingThoughAnotherSheetCameLater) {
    auto& sheet = open(mailShortcut());
    services_.application.modal = true;
    QWidget other;
    QDialog later(&other);
    later.open();
    useAll(sheet, act);
    EXPECT_THAT(sheet.findChildren<QDialog*>(), IsEmpty());
    EXPECT_TRUE(isOpen());
    EXPECT_FALSE(sheet.keyRecorder().isRecording());
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(EditorSheetsTest, ThePanelIsAliveIfItCameAfterADialogBeforeAllWindows) {
    auto& panel = selectApp(open(mailShortcut()));
    services_.application.modal = true;
    ASSERT_EQ(QApplication::activeModalWidget(), &panel);
    find<QPushButton>(panel, "cancelButton").click();
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(EditorSheetsTest, ThePanelIsDeadUnderItsFilePanel) {
    services_.applicationBundles.installed = {{.path = exampleApp,
                                               .bundleIdentifier = {},
                                               .name = "Example",
                                               .genericName = {},
                                               .keywords = {},
                                               .icon = {}}};
    auto& sheet = open(mailShortcut());
    auto& panel = selectApp(sheet);
    openFiles(panel);
    useAll(panel, act);
    find<QPushButton>(panel, "cancelButton").click();
    EXPECT_THAT(panel.findChildren<QFileDialog*>(), SizeIs(1));
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(shownName(sheet), "Post");
}

TEST_F(EditorSheetsTest, AnsweredDialogsLeaveTheWindowAlive) {
    auto& sheet = open(mailShortcut());
    openAlert(sheet).buttons().front()->click();
    find<QPushButton>(selectApp(sheet), "cancelButton").click();
    turn();
    find<QPushButton>(sheet, "recordButton").click();
    EXPECT_TRUE(sheet.keyRecorder().isRecording());
    find<QPushButton>(sheet, "recordButton").click();
    EXPECT_FALSE(sheet.keyRecorder().isRecording());
    find<QPushButton>(sheet, "cancelButton").click();
    EXPECT_FALSE(isOpen());
}

TEST_F(EditorSheetsTest, ADialogOnAnotherEditorDoesNotCount) {
    selectApp(open());
    const auto other = sheet_.lock();
    auto& sheet = open(mailShortcut());
    saveButton(sheet).click();
    EXPECT_THAT(saved_, SizeIs(1));
    other->close();
}

} // namespace
} // namespace hollowfernpike
