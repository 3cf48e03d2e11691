#include "desktop/sway/SwayStory.h"
#include "desktop/wayland/Targets.h"
#include "support/WaitUntil.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class TargetsOnSwayTest : public Targets {
protected:
    TargetsOnSwayTest() : Targets(std::make_unique<SwayStory>()) {}

    SwayStory& onSway = static_cast<SwayStory&>(story);

    void putIntoTabs() {
        onSway.sway.layOut("tabbed");
        ASSERT_TRUE(story.switchTo(front));
    }
};

TEST_F(TargetsOnSwayTest, AWindowThatATabCoversComesForward) {
    putIntoTabs();
    bringFromHiding();
    EXPECT_FALSE(story.pager.windowOf(front.copies().at(0))->isVisible);
}

TEST_F(TargetsOnSwayTest, AWindowInAStackComesForward) {
    onSway.sway.layOut("stacking");
    ASSERT_TRUE(story.switchTo(front));
    bringFromHiding();
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
    onSway.sway.moveToScratchpad(targetProcess());
    bringFromHiding();
    EXPECT_EQ(story.pager.windowOf(targetProcess())->workspace, "1");
}

TEST_F(TargetsOnSwayTest, AWindowBehindAFullscreenOneComesForward) {
    story.pager.makeFullscreen(front.copies().at(0));
    bringFromHiding();
}

} // namespace
} // namespace hollowfernpike
