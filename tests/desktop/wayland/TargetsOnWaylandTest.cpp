#include "desktop/wayland/Targets.h"
#include "support/WaitUntil.h"

#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class TargetsOnWaylandTest : public Targets {};

TEST_F(TargetsOnWaylandTest, AVisibleWindowGetsTheFocus) {
    story.bind(bound, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(TargetsOnWaylandTest, AWindowOnAnotherWorkspaceTakesUsThere) {
    const auto here = story.pager.workspace();
    const auto away = story.pager.otherWorkspace();
    story.pager.moveToWorkspace(targetProcess(), away);
    bringFromHiding();
    EXPECT_EQ(story.pager.workspace(), away);
    EXPECT_EQ(story.pager.windowOf(front.copies().at(0))->workspace, here);
}

TEST_F(TargetsOnWaylandTest, AFullscreenWindowOnAnotherWorkspaceStaysFullscreen) {
    story.pager.makeFullscreen(targetProcess());
    story.pager.moveToWorkspace(targetProcess(), story.pager.otherWorkspace());
    bringFromHiding();
    EXPECT_TRUE(story.pager.windowOf(targetProcess())->isFullscreen);
}

TEST_F(TargetsOnWaylandTest, TheApplicationInFrontStaysThere) {
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

TEST_F(TargetsOnWaylandTest, AWindowlessApplicationIsAskedByItsEntryToShowItself) {
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

TEST_F(TargetsOnWaylandTest, AnApplicationThatLivesWithoutWindowsOpensThemAgain) {
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
