#include "desktop/kde/KWinStory.h"
#include "desktop/wayland/KeyboardUserOnWayland.h"

#include <csignal>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// KWin crashes, and Plasma starts it anew.
class RestartOnKWinTest : public testing::Test, protected KeyboardUserOnWayland {
protected:
    RestartOnKWinTest() : KeyboardUserOnWayland(japaneseWords, std::make_unique<KWinStory>()) {}

    void SetUp() override { startUtility(); }

    KWinStory& onKWin() { return static_cast<KWinStory&>(story); }

    void restart() {
        const auto before = story.bindings();
        onKWin().restart();
        ASSERT_TRUE(story.bindsAgain(before)) << story.utilityTells();
    }
};

TEST_F(RestartOnKWinTest, TheCombinationsAreBack) {
    const auto process = story.utility().pid();
    restart();
    EXPECT_EQ(story.utility().pid(), process);
    EXPECT_FALSE(story.utility().hasEnded());
    auto& again = story.open("Again");
    EXPECT_TRUE(story.brings(target, again, bound));
}

TEST_F(RestartOnKWinTest, ThereIsStillOneInstance) {
    restart();
    EXPECT_TRUE(openWindow());
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(RestartOnKWinTest, SeveralCrashesAreSurvived) {
    for (int crash = 0; crash < 3; ++crash) {
        ASSERT_NO_FATAL_FAILURE(restart()) << crash;
    }
    EXPECT_TRUE(openWindow());
}

TEST_F(RestartOnKWinTest, NoWindowOpensIfNoneWasOpen) {
    restart();
    story.open("Again");
    EXPECT_FALSE(hasWindow(managementTitle));
}

TEST_F(RestartOnKWinTest, AnOpenEditorIsThereAgainWithWhatWasEntered) {
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

TEST_F(RestartOnKWinTest, TheEditorOfANewShortcutIsThereAgain) {
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

TEST_F(RestartOnKWinTest, WhenTheSessionEndsTheProgramEnds) {
    onKWin().desktop.kwin().signal(SIGTERM);
    onKWin().desktop.kwin().wait();
    EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
}

} // namespace
} // namespace hollowfernpike
