#include "desktop/wayland/KeyboardUserOnWayland.h"

#include <csignal>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::ElementsAre;

MATCHER_P(isCombination, expected, "") {
    return arg.keyCode == expected.keyCode && arg.modifierFlags == expected.modifierFlags;
}

class RecordingOnWaylandTest : public testing::Test, protected KeyboardUserOnWayland {
protected:
    void SetUp() override {
        startUtility();
        ASSERT_TRUE(desktopHasItsOwn());
        openManagement();
        beginToRecord();
    }

    void closeEditor() {
        story.pager.closeTitled(editTitle);
        ASSERT_TRUE(isGone(editTitle));
    }

    void save() {
        ASSERT_TRUE(hasRecorded());
        story.keyboard.strike({"RTRN"});
        ASSERT_TRUE(isGone(editTitle));
    }
};

TEST_F(RecordingOnWaylandTest, ACombinationOfTheDesktopIsRecordedAndNotCarriedOut) {
    story.strike(own());
    save();
    EXPECT_THAT(saved(), ElementsAre(isCombination(own())));
    EXPECT_FALSE(story.session().hasDoneOwn());
    EXPECT_TRUE(desktopHasItsOwn()) << "the user's own command stays";
}

TEST_F(RecordingOnWaylandTest, ACombinationOfOursIsRecordedAndNotCarriedOut) {
    story.strike(bound);
    save();
    EXPECT_THAT(saved(), ElementsAre(isCombination(bound)));
    EXPECT_EQ(target.starts(), 0);
    managementComes(); // else its own late request would put it before the next window
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target)) << "it works again afterwards";
}

TEST_F(RecordingOnWaylandTest, KeysWithoutModifiersRepeatsAndModifierKeysAreNotTaken) {
    story.keyboard.strike({"AC01"});
    story.keyboard.strike({"LCTL"});
    story.keyboard.strike({"LWIN"});
    story.strike({0, control | shift});
    save();
    EXPECT_THAT(saved(), ElementsAre(isCombination(Combination{0, control | shift})));
}

TEST_F(RecordingOnWaylandTest, TheDesktopHasItsCombinationsBackAfterTheRecording) {
    story.strike(another);
    EXPECT_TRUE(hasRecorded());
    EXPECT_TRUE(desktopHasItsOwn());
}

TEST_F(RecordingOnWaylandTest, TheDesktopHasItsCombinationsBackAfterEscape) {
    story.keyboard.strike({"ESC"});
    ASSERT_TRUE(isGone(editTitle)) << "Escape is the key of Cancel, too";
    ASSERT_TRUE(hasRecorded());
    EXPECT_TRUE(desktopHasItsOwn());
    EXPECT_THAT(saved(), ElementsAre(isCombination(bound)));
}

TEST_F(RecordingOnWaylandTest, TheDesktopHasItsCombinationsBackWhenTheWindowsAreClosed) {
    story.pager.close(story.utility().pid());
    ASSERT_TRUE(isGone(editTitle));
    ASSERT_TRUE(hasRecorded());
    EXPECT_TRUE(desktopHasItsOwn());
}

TEST_F(RecordingOnWaylandTest, TheDesktopHasItsCombinationsBackWhenTheEditorIsClosed) {
    closeEditor();
    ASSERT_TRUE(isFocused(managementTitle));
    ASSERT_TRUE(hasRecorded());
    EXPECT_TRUE(desktopHasItsOwn());
}

TEST_F(RecordingOnWaylandTest, AfterAnEditorWasClosedWhileItRecordedAnotherRecords) {
    closeEditor();
    ASSERT_TRUE(isFocused(managementTitle));
    beginToRecord();
    story.strike(own());
    ASSERT_TRUE(hasRecorded());
    EXPECT_FALSE(story.session().hasDoneOwn());
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(RecordingOnWaylandTest, TheDesktopHasItsCombinationsBackWhenTheProgramIsKilled) {
    story.utility().signal(SIGKILL);
    ASSERT_EQ(story.utility().wait(), -SIGKILL);
    ASSERT_TRUE(isGone(editTitle));
    EXPECT_TRUE(desktopHasItsOwn());
}

TEST_F(RecordingOnWaylandTest, AnotherWindowInFrontEndsTheRecording) {
    const auto editor = dialogComes(editTitle);
    reader.find(editor, "push button", "停止");
    ASSERT_TRUE(story.switchTo(front));
    reader.find(editor, "push button", words.record);
    EXPECT_TRUE(hasRecorded());
}

TEST_F(RecordingOnWaylandTest, AnotherWindowInFrontKeepsItsKeys) {
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_TRUE(desktopHasItsOwn());
    const auto key = story.keycode(another);
    story.strike(another);
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_EQ(front.downs(key), 1);
}

} // namespace
} // namespace hollowfernpike
