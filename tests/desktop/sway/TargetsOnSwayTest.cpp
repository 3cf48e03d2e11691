#include "desktop/sway/SwayStory.h"
#include "support/WaitUntil.h"

#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// Where the target's window is before the press.
class TargetsOnSwayTest : public testing::Test {
protected:
    SwayStory story;
    Application& target = story.open("Target");
    Application& front = story.open("Front");

    pid_t targetProcess() const { return target.copies().at(0); }
    bool isTargetVisible() const { return story.pager.windowOf(targetProcess())->isVisible; }

    /// Waits until the target's window cannot be seen, starts the utility and presses the keys.
    void bringFromHiding() {
        ASSERT_TRUE(waitUntil([&] { return !isTargetVisible(); }));
        ASSERT_TRUE(story.getsKeys(front));
        story.bind(bound, target);
        story.startUtility();
        story.strike(bound);
        EXPECT_TRUE(story.isInFront(target));
        EXPECT_TRUE(isTargetVisible());
        EXPECT_TRUE(story.getsKeys(target));
        EXPECT_TRUE(story.nobodySaw(bound));
        EXPECT_EQ(target.starts(), 1);
    }

    void putIntoTabs() {
        story.pager.layOut("tabbed");
        ASSERT_TRUE(story.switchTo(front));
    }
};

TEST_F(TargetsOnSwayTest, AVisibleWindowGetsTheFocus) {
    story.bind(bound, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(TargetsOnSwayTest, AWindowThatATabCoversComesForward) {
    putIntoTabs();
    bringFromHiding();
    EXPECT_FALSE(story.pager.windowOf(front.copies().at(0))->isVisible);
}

TEST_F(TargetsOnSwayTest, AWindowInAStackComesForward) {
    story.pager.layOut("stacking");
    ASSERT_TRUE(story.switchTo(front));
    bringFromHiding();
}

TEST_F(TargetsOnSwayTest, AWindowOnAnotherWorkspaceTakesUsThere) {
    story.pager.moveToWorkspace(targetProcess(), "away");
    bringFromHiding();
    EXPECT_EQ(story.pager.workspace(), "away");
    EXPECT_EQ(story.pager.windowOf(front.copies().at(0))->workspace, "1");
}

TEST_F(TargetsOnSwayTest, AHiddenTabOnAnotherWorkspaceComesForwardThere) {
    putIntoTabs();
    const auto& other = story.open("Other");
    story.pager.goToWorkspace("2");
    auto& there = story.open("There");
    ASSERT_FALSE(isTargetVisible());
    story.bind(bound, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, there, bound));
    EXPECT_TRUE(story.switchTo(target));
    EXPECT_EQ(story.pager.workspace(), "1");
    EXPECT_FALSE(story.pager.windowOf(other.copies().at(0))->isVisible);
}

TEST_F(TargetsOnSwayTest, AWindowInTheScratchpadComesToThisWorkspace) {
    story.pager.moveToScratchpad(targetProcess());
    bringFromHiding();
    EXPECT_EQ(story.pager.windowOf(targetProcess())->workspace, "1");
}

TEST_F(TargetsOnSwayTest, AWindowBehindAFullscreenOneComesForward) {
    story.pager.makeFullscreen(front.copies().at(0));
    bringFromHiding();
}

TEST_F(TargetsOnSwayTest, AFullscreenWindowOnAnotherWorkspaceStaysFullscreen) {
    story.pager.makeFullscreen(targetProcess());
    story.pager.moveToWorkspace(targetProcess(), "away");
    bringFromHiding();
    EXPECT_TRUE(story.pager.windowOf(targetProcess())->isFullscreen);
}

TEST_F(TargetsOnSwayTest, TheApplicationInFrontStaysThere) {
    story.bind(bound, target);
    story.bind(another, front);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(target));
    for (int round = 0; round < 3; ++round) {
        story.strike(bound);
        EXPECT_TRUE(story.getsKeys(target));
    }
    story.strike(another); // presses are obeyed in their order
    ASSERT_TRUE(story.isInFront(front));
    EXPECT_TRUE(story.nobodySaw(bound));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(TargetsOnSwayTest, AWindowlessApplicationIsAskedByItsEntryToShowItself) {
    auto& windowless = story.install("Windowless", {.options = {"--no-window"}});
    windowless.start();
    ASSERT_TRUE(waitUntil([&] { return windowless.starts() == 1; }));
    story.bind(bound, windowless);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return windowless.starts() == 2; }));
    EXPECT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(TargetsOnSwayTest, AnApplicationThatLivesWithoutWindowsOpensThemAgain) {
    auto& single = story.open("Single", {.options = {"--single"}});
    story.pager.close(single.copies().at(0));
    ASSERT_TRUE(waitUntil([&] { return story.pager.windows().size() == 2; }));
    story.bind(bound, single);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(single));
    EXPECT_EQ(single.starts(), 2);
    EXPECT_TRUE(waitUntil([&] { return single.copies().size() == 1; }));
    EXPECT_TRUE(story.nobodySaw(bound));
}

} // namespace
} // namespace hollowfernpike
