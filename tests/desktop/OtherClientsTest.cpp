#include "desktop/Story.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const Combination wanted{37, control | option};

class OtherClientsTest : public testing::Test {
protected:
    Story story;
    Application& front = story.open("Front");
    Application& target = story.open("Target");
    XClient rival{story.desktop.display()};

    /// Starts the utility while `rival` holds `wanted`.
    void startUtility() {
        story.bind(wanted, target);
        story.bind(another, front);
        story.writeShortcuts();
        story.launchUtility();
        ASSERT_TRUE(story.isLive(story.grabOf(another)));
        waitUntilTheSharedIsObserved();
    }

    /// No other client can see when the observing begins, but it does before a press is answered.
    void waitUntilTheSharedIsObserved() {
        story.strike(another);
        ASSERT_TRUE(story.isInFront(front));
    }
};

TEST_F(OtherClientsTest, ACombinationHeldByAnotherProgramIsSharedUntilItLetsGo) {
    const auto grab = story.grabOf(wanted);
    ASSERT_TRUE(rival.grab(grab));
    startUtility();
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(story.switchTo(front));
        story.strike(wanted);
        EXPECT_TRUE(story.isInFront(target));
        EXPECT_TRUE(rival.waitForPress(grab));
        story.strike(another);
        EXPECT_TRUE(story.isInFront(front)) << "what is free is live";
    }
    EXPECT_TRUE(story.nobodySaw(another));

    rival.ungrab(grab);
    ASSERT_TRUE(story.switchTo(front));
    story.strike(wanted);
    EXPECT_TRUE(story.isInFront(target)) << "seen as before; from here on it is free to be had";
    ASSERT_TRUE(story.isLive(grab));
    EXPECT_TRUE(story.brings(target, front, wanted));
}

TEST_F(OtherClientsTest, ACombinationHeldWithCapsLockOnlyIsSharedInEveryLockState) {
    auto withCapsLock = story.grabOf(wanted);
    withCapsLock.state |= XCB_MOD_MASK_LOCK;
    ASSERT_TRUE(rival.grab(withCapsLock));
    startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(wanted);
    ASSERT_TRUE(story.isInFront(target));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_EQ(front.downs(story.grabOf(wanted).key), 1);
}

} // namespace
} // namespace hollowfernpike
