#include "desktop/wayland/KeyboardUserOnWayland.h"
#include "desktop/wayland/StackingStory.h"

#include <csignal>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// The compositor crashes and is started anew in the same session.
class RestartOnWaylandTest : public testing::Test, protected KeyboardUserOnWayland {
protected:
    RestartOnWaylandTest() : KeyboardUserOnWayland(japaneseWords, makeStackingStory()) {}

    void SetUp() override { startUtility(); }

    void restart() {
        const auto before = story.bindings();
        static_cast<StackingStory&>(story).restart();
        ASSERT_TRUE(story.bindsAgain(before)) << story.utilityTells();
    }
};

TEST_F(RestartOnWaylandTest, TheCombinationsAreBack) {
    const auto process = story.utility().pid();
    restart();
    EXPECT_EQ(story.utility().pid(), process);
    EXPECT_FALSE(story.utility().hasEnded());
    auto& again = story.open("Again");
    EXPECT_TRUE(story.brings(target, again, bound));
}

TEST_F(RestartOnWaylandTest, ThereIsStillOneInstance) {
    restart();
    EXPECT_TRUE(openWindow());
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(RestartOnWaylandTest, SeveralCrashesAreSurvived) {
    for (int crash = 0; crash < 3; ++crash) {
        ASSERT_NO_FATAL_FAILURE(restart()) << crash;
    }
    EXPECT_TRUE(openWindow());
}

TEST_F(RestartOnWaylandTest, NoWindowOpensIfNoneWasOpen) {
    restart();
    story.open("Again");
    EXPECT_FALSE(hasWindow(managementTitle));
}

TEST_F(RestartOnWaylandTest, AnOpenEditorIsThereAgainWithWhatWasEntered) {
    openManagement();
    beginToRecord();
    story.strike(another);
    ASSERT_TRUE(hasRecorded());
    restart();
    restart(); // perhaps before the windows have come
    const auto editor = dialogComes(editTitle);
    EXPECT_TRUE(hasWindow(managementTitle));
    story.keyboard.strike({"RTRN"});
    ASSERT_TRUE(isGone(editTitle));
    ASSERT_EQ(saved().size(), 1);
    EXPECT_EQ(saved()[0].keyCode, another.keyCode);
    EXPECT_EQ(saved()[0].modifierFlags, another.modifierFlags);
}

TEST_F(RestartOnWaylandTest, TheEditorOfANewShortcutIsThereAgain) {
    const auto window = openManagement();
    press(window, words.add);
    choose(dialogComes(addTitle), target);
    restart();
    const auto editor = dialogComes(addTitle);
    reader.find(editor, "label", "Target");
    record(editor, another);
    strikeAndLeave(addTitle, "RTRN");
    EXPECT_TRUE(
        listBecomes(nlohmann::json::array({shortcut(bound, target), shortcut(another, target)})));
}

TEST_F(RestartOnWaylandTest, WhenTheSessionEndsTheProgramEnds) {
    story.session().compositor().signal(SIGTERM);
    story.session().compositor().wait();
    EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
}

} // namespace
} // namespace hollowfernpike
