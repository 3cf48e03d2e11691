#include "ui/editor/EditorSheetTest.h"

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using namespace test;

using EditorLifeTest = EditorSheetTest;

TEST_F(EditorLifeTest, LivesWhileItIsShownAndGoesLater) {
    auto& sheet = open();
    EXPECT_FALSE(sheet_.expired());
    sheet.cancelSheet();
    EXPECT_FALSE(sheet_.expired());
    turn();
    EXPECT_TRUE(sheet_.expired());
}

TEST_F(EditorLifeTest, IsTheOwnersWhileItIsNotShown) {
    auto sheet = AddEditShortcutSheet::make();
    const std::weak_ptr<AddEditShortcutSheet> weak = sheet;
    sheet.reset();
    EXPECT_TRUE(weak.expired());
}

TEST_F(EditorLifeTest, OutlivesItsClosingWhileSomebodyHoldsIt) {
    const auto sheet = AddEditShortcutSheet::make(mailShortcut());
    sheet->show();
    sheet->close();
    turn();
    EXPECT_EQ(shownName(*sheet), "Post");
}

TEST_F(EditorLifeTest, ClosesWhenTheProgramEnds) {
    open();
    QMetaObject::invokeMethod(qApp, "aboutToQuit");
    turn();
    EXPECT_TRUE(sheet_.expired());
}

TEST_F(EditorLifeTest, ARecordingEndsWithItsWindow) {
    auto& sheet = open(mailShortcut());
    const std::weak_ptr<KeyRecorderView> recorder = sheet.keyRecorder().weak_from_this();
    sheet.keyRecorder().toggleRecording();
    sheet.close();
    EXPECT_EQ(services_.eventTaps.tap(), nullptr);
    turn();
    EXPECT_TRUE(sheet_.expired());
    EXPECT_TRUE(recorder.expired());
    EXPECT_EQ(calls().back(), "application.setActivationPolicy accessory");
    EXPECT_THAT(saved_, IsEmpty());
}

TEST_F(EditorLifeTest, ACombinationOnItsWayIsNotTakenOnceTheWindowIsGone) {
    const auto shortcut = mailShortcut();
    const auto sheet = AddEditShortcutSheet::make(shortcut);
    sheet->show();
    sheet->keyRecorder().toggleRecording();
    services_.eventTaps.tap()->press(static_cast<std::uint16_t>(shortcut.keyCode + 1), 0x100000);
    sheet->close();
    turn();
    EXPECT_EQ(sheet->keyRecorder().capturedKeyCode(), shortcut.keyCode);
}

TEST_F(EditorLifeTest, StaysARegularApplicationAfterRecordingInItsWindow) {
    auto& sheet = open();
    services_.application.openWindows = {{.isVisible = true, .className = "QWidget"}};
    record(sheet, 0, 0x100000);
    EXPECT_THAT(calls(), Not(Contains("application.setActivationPolicy accessory")));
}

TEST_F(EditorLifeTest, AnotherEditorNeitherClosesNorRecordsWithIt) {
    auto& one = open(mailShortcut());
    const std::weak_ptr<AddEditShortcutSheet> first = sheet_;
    auto& other = open();
    record(one, 11, 0x80000);
    EXPECT_FALSE(other.keyRecorder().capturedKeyCode());
    EXPECT_FALSE(saveButton(other).isEnabled());
    one.saveSheet();
    turn();
    EXPECT_TRUE(first.expired());
    EXPECT_TRUE(other.isVisible());
}

} // namespace
} // namespace hollowfernpike
