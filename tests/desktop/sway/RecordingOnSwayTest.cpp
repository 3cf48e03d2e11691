#include "desktop/sway/WindowOnSwayStory.h"

#include <csignal>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::ElementsAre;

MATCHER_P(isCombination, expected, "") {
    return arg.keyCode == expected.keyCode && arg.modifierFlags == expected.modifierFlags;
}

class RecordingOnSwayTest : public testing::Test, protected WindowOnSwayStory {
protected:
    void SetUp() override {
        startUtility();
        ASSERT_TRUE(swayHasItsCombination());
        std::filesystem::remove(told());
        ASSERT_TRUE(openWindow());
        ASSERT_TRUE(beginToRecord());
    }

    void closeEditor() {
        story.pager.run("[title=\"" + std::string{editTitle} + "\"] kill");
        ASSERT_TRUE(isGone(editTitle));
    }

    void save() {
        ASSERT_TRUE(hasRecorded());
        story.keyboard.strike({"RTRN"});
        ASSERT_TRUE(isGone(editTitle));
    }
};

TEST_F(RecordingOnSwayTest, ACombinationOfSwayIsRecordedAndNotCarriedOut) {
    story.strike(swaysOwn);
    save();
    EXPECT_THAT(saved(), ElementsAre(isCombination(swaysOwn)));
    EXPECT_FALSE(std::filesystem::exists(told()));
    EXPECT_TRUE(swayHasItsCombination()) << "the user's own command stays";
}

TEST_F(RecordingOnSwayTest, ACombinationOfOursIsRecordedAndNotCarriedOut) {
    story.strike(bound);
    save();
    EXPECT_THAT(saved(), ElementsAre(isCombination(bound)));
    EXPECT_EQ(target.starts(), 0);
    EXPECT_TRUE(isFocused(managementTitle));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target)) << "it works again afterwards";
}

TEST_F(RecordingOnSwayTest, KeysWithoutModifiersRepeatsAndModifierKeysAreNotTaken) {
    story.keyboard.strike({"AC01"});
    story.keyboard.strike({"LCTL"});
    story.keyboard.strike({"LWIN"});
    story.strike({0, control | shift});
    save();
    EXPECT_THAT(saved(), ElementsAre(isCombination(Combination{0, control | shift})));
}

TEST_F(RecordingOnSwayTest, SwayHasItsCombinationsBackAfterTheRecording) {
    story.strike(another);
    EXPECT_TRUE(hasRecorded());
    EXPECT_TRUE(swayHasItsCombination());
}

TEST_F(RecordingOnSwayTest, SwayHasItsCombinationsBackAfterEscape) {
    story.keyboard.strike({"ESC"});
    ASSERT_TRUE(isGone(editTitle)) << "Escape is the key of Cancel, too";
    ASSERT_TRUE(hasRecorded());
    EXPECT_TRUE(swayHasItsCombination());
    EXPECT_THAT(saved(), ElementsAre(isCombination(bound)));
}

TEST_F(RecordingOnSwayTest, SwayHasItsCombinationsBackWhenTheWindowsAreClosed) {
    story.pager.close(story.utility().pid());
    ASSERT_TRUE(isGone(editTitle));
    ASSERT_TRUE(hasRecorded());
    EXPECT_TRUE(swayHasItsCombination());
}

TEST_F(RecordingOnSwayTest, SwayHasItsCombinationsBackWhenTheEditorIsClosed) {
    closeEditor();
    ASSERT_TRUE(isFocused(managementTitle));
    ASSERT_TRUE(hasRecorded());
    EXPECT_TRUE(swayHasItsCombination());
}

TEST_F(RecordingOnSwayTest, AfterAnEditorWasClosedWhileItRecordedAnotherRecords) {
    closeEditor();
    ASSERT_TRUE(isFocused(managementTitle));
    ASSERT_TRUE(beginToRecord(0)) << "its button has kept the focus";
    story.strike(swaysOwn);
    ASSERT_TRUE(hasRecorded());
    EXPECT_FALSE(std::filesystem::exists(told()));
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(RecordingOnSwayTest, SwayHasItsCombinationsBackWhenTheProgramIsKilled) {
    story.utility().signal(SIGKILL);
    ASSERT_EQ(story.utility().wait(), -SIGKILL);
    ASSERT_TRUE(isGone(editTitle));
    EXPECT_TRUE(swayHasItsCombination());
}

TEST_F(RecordingOnSwayTest, AnotherWindowInFrontKeepsItsKeys) {
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_TRUE(swayHasItsCombination());
    const auto key = story.keycode(another);
    story.strike(another);
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_EQ(front.downs(key), 1);
}

} // namespace
} // namespace hollowfernpike
