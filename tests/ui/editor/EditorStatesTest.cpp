#include "ui/editor/EditorSheetTest.h"
#include "ui/icons/IconView.h"

#include <QAccessible>

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using namespace test;

class EditorStatesTest : public EditorSheetTest {
protected:
    static bool showsStep2(AddEditShortcutSheet& sheet) {
        return find<QWidget>(sheet, "step2Container").isVisible();
    }

    static bool showsIcon(AddEditShortcutSheet& sheet) {
        return !find<IconView>(sheet, "step1AppIconView").icon().isNull();
    }
};

TEST_F(EditorStatesTest, AddingBeginsWithTheApplicationAlone) {
    auto& sheet = open();
    EXPECT_EQ(sheet.size(), QSize(400, 200));
    EXPECT_FALSE(showsStep2(sheet));
    EXPECT_FALSE(saveButton(sheet).isEnabled());
    EXPECT_EQ(shownName(sheet), "");
    EXPECT_FALSE(showsIcon(sheet));
    EXPECT_FALSE(sheet.keyRecorder().capturedKeyCode());
}

TEST_F(EditorStatesTest, EditingBeginsWithBothStepsFilled) {
    auto& sheet = open(mailShortcut());
    EXPECT_EQ(sheet.size(), QSize(400, 280));
    EXPECT_TRUE(showsStep2(sheet));
    EXPECT_TRUE(saveButton(sheet).isEnabled());
    EXPECT_EQ(shownName(sheet), "Post");
    EXPECT_TRUE(showsIcon(sheet));
    EXPECT_EQ(sheet.keyRecorder().capturedKeyCode(), 46);
    EXPECT_EQ(find<FittingLabel>(sheet, "displayLabel").text(), "⌘M");
}

TEST_F(EditorStatesTest, ChoosingAnApplicationShowsItAndTheSecondStep) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    EXPECT_EQ(shownName(sheet), "Example");
    EXPECT_TRUE(showsIcon(sheet));
    EXPECT_TRUE(showsStep2(sheet));
    EXPECT_FALSE(saveButton(sheet).isEnabled());
}

TEST_F(EditorStatesTest, ACombinationEnablesSave) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    sheet.keyRecorder().toggleRecording();
    strike(0, 0);
    EXPECT_FALSE(saveButton(sheet).isEnabled()) << "a key alone is none";
    strike(0, 0x100000);
    EXPECT_TRUE(saveButton(sheet).isEnabled());
}

TEST_F(EditorStatesTest, SaveStaysEnabledOnceACombinationIsKnown) {
    auto& sheet = open();
    choose(sheet, exampleApp);
    record(sheet, 0, 0x100000);
    sheet.keyRecorder().toggleRecording();
    EXPECT_TRUE(saveButton(sheet).isEnabled());
    sheet.keyRecorder().stopRecording();
    EXPECT_TRUE(saveButton(sheet).isEnabled());
}

TEST_F(EditorStatesTest, GrowsOnceAndKeepsItsTopEdge) {
    auto& sheet = open();
    const QRect grown(sheet.geometry().topLeft(), QSize(400, 280));
    for (const char* path : {exampleApp, namelessApp}) {
        choose(sheet, path);
        EXPECT_EQ(sheet.geometry(), grown) << path;
    }
}

TEST_F(EditorStatesTest, LeavesAWindowAloneThatIsTallEnough) {
    for (const int height : {280, 281, 400}) {
        auto& sheet = open();
        sheet.setFixedHeight(height);
        choose(sheet, exampleApp);
        EXPECT_EQ(sheet.size(), QSize(400, height));
        sheet.close();
    }
}

TEST_F(EditorStatesTest, GrowsWhenASinglePointIsMissing) {
    auto& sheet = open();
    sheet.setFixedHeight(279);
    choose(sheet, exampleApp);
    EXPECT_EQ(sheet.size(), QSize(400, 280));
}

TEST_F(EditorStatesTest, ItsButtonsStayEnabledWhateverFails) {
    auto& sheet = open(mailShortcut());
    const auto expectEnabled = [&](const char* after) {
        for (const char* name : {"selectButton", "recordButton", "cancelButton", "saveButton"}) {
            EXPECT_TRUE(find<QPushButton>(sheet, name).isEnabled()) << name << " after " << after;
        }
    };
    choose(sheet, exampleApp);
    choose(sheet, namelessApp);
    expectEnabled("choosing twice");
    sheet.saveSheet();
    alertOn(sheet)->buttons().front()->click();
    turn();
    expectEnabled("a refusal");
    services_.eventTaps.refusesListenOnly = true;
    sheet.keyRecorder().toggleRecording();
    expectEnabled("a refused tap");
    services_.accessibilityTrust.trusted = false;
    sheet.keyRecorder().toggleRecording();
    expectEnabled("missing trust");
}

TEST_F(EditorStatesTest, DoesNotGrowWhenTheEditedShortcutGetsAnotherApplication) {
    auto& sheet = open(mailShortcut());
    const QRect before = sheet.geometry();
    choose(sheet, exampleApp);
    EXPECT_EQ(shownName(sheet), "Example");
    EXPECT_EQ(sheet.geometry(), before);
}

TEST_F(EditorStatesTest, TheNameIsTheFileNameWithoutItsExtension) {
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
}

TEST_F(EditorStatesTest, CanBeClosedButNeitherMinimisedNorResized) {
    auto& sheet = open();
    const Qt::WindowFlags flags = sheet.windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowTitleHint));
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_EQ(sheet.minimumSize(), sheet.maximumSize());
}

TEST_F(EditorStatesTest, EveryControlHasAnAccessibleName) {
    auto& sheet = open(mailShortcut());
    for (const QWidget* control : sheet.findChildren<QWidget*>()) {
        const auto* button = qobject_cast<const QAbstractButton*>(control);
        if (control->focusPolicy() != Qt::NoFocus) {
            EXPECT_FALSE(control->accessibleName().isEmpty() &&
                         (button == nullptr || button->text().isEmpty()))
                << control->objectName().toStdString();
        }
    }
}

TEST_F(EditorStatesTest, TellsAssistiveTechnologyThatItIsADialogWithARecorder) {
    auto& sheet = open();
    const auto* const dialog = QAccessible::queryAccessibleInterface(&sheet);
    EXPECT_EQ(dialog->role(), QAccessible::Dialog);
    EXPECT_EQ(dialog->text(QAccessible::Name), "ショートカット追加");
    const auto* const recorder = QAccessible::queryAccessibleInterface(&sheet.keyRecorder());
    EXPECT_EQ(recorder->role(), QAccessible::Pane);
    EXPECT_EQ(recorder->text(QAccessible::Name), "ショートカットキー");
}

} // namespace
} // namespace hollowfernpike
