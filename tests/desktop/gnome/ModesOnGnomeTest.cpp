#include "desktop/gnome/GnomeStory.h"

#include <string>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace hollowfernpike {
namespace {

using namespace test;

/// What the shell itself has before the windows.
class ModesOnGnomeTest : public testing::Test {
protected:
    GnomeStory story;
    Application& target = story.open("Target");
    Application& front = story.open("Front");

    void SetUp() override {
        story.bind(bound, target);
        story.startUtility();
        ASSERT_TRUE(story.brings(target, front, bound));
    }

    bool becomes(const std::string& condition) {
        return waitUntil([&] { return story.desktop.evaluate(condition).get<bool>(); });
    }

    void enter(const std::string& mode) {
        story.desktop.evaluate("Main.sessionMode.pushMode('" + mode + "'); 0");
    }
    void leave(const std::string& mode) {
        story.desktop.evaluate("Main.sessionMode.popMode('" + mode + "'); 0");
    }
};

TEST_F(ModesOnGnomeTest, AWindowComesOutOfTheOverview) {
    ASSERT_TRUE(story.switchTo(front));
    story.desktop.evaluate("Main.overview.show(); 0");
    ASSERT_TRUE(becomes("Main.overview.visible && !Main.overview.animationInProgress"));
    story.hold(bound);
    EXPECT_TRUE(becomes("!Main.overview.visible"));
    story.letGo(bound); // the shell gives nobody the keys before the next event
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
}

TEST_F(ModesOnGnomeTest, ADialogOfTheShellKeepsTheKeysAndSeesNoneOfThePress) {
    ASSERT_TRUE(story.switchTo(front));
    story.desktop.evaluate("Main.openRunDialog(); 0");
    ASSERT_TRUE(becomes("Main.runDialog.state === 0 && global.stage.key_focus !== null"));
    story.strike(bound);
    story.keyboard.strike({"AC01"});
    EXPECT_TRUE(becomes("Main.runDialog._entryText.text === 'a'"));
    story.keyboard.strike({"ESC"});
    ASSERT_TRUE(becomes("Main.runDialog.state === 1"));
    EXPECT_TRUE(story.isInFront(target)) << "once the dialog has gone";
}

TEST_F(ModesOnGnomeTest, NothingIsBoundBehindALockedScreenAndEverythingAfterwards) {
    const auto before = story.bindings();
    enter("unlock-dialog");
    ASSERT_TRUE(story.bindsAgain(before)) << story.utilityTells();
    const auto seen = front.downs(story.keycode(bound));
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return front.downs(story.keycode(bound)) > seen; }));
    const auto locked = story.bindings();
    leave("unlock-dialog");
    ASSERT_TRUE(story.bindsAgain(locked)) << story.utilityTells();
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST(LaunchOnGnomeTest, AWindowThatComesLateLeavesTheKeysToWhereTheUserHasGone) {
    GnomeStory story;
    auto& target = story.install("Target", {.options = {"--delay", "1500"}});
    auto& front = story.open("Front");
    auto& other = story.open("Other");
    story.bind(bound, target);
    story.startUtility();
    story.strike(bound);
    ASSERT_TRUE(story.switchTo(front));
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 1; }));
    ASSERT_TRUE(waitUntil([&] { return story.pager.windowOf(target.copies().at(0)).has_value(); }));
    EXPECT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.brings(target, other, bound)) << "when it is asked for again";
}

} // namespace
} // namespace hollowfernpike
