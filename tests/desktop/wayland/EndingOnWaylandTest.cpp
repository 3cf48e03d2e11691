#include "desktop/SignalName.h"
#include "desktop/wayland/Ending.h"
#include "support/WaitUntil.h"

#include <csignal>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::Ge;
using testing::Optional;

class EndingOnWaylandTest : public Ending {};

class SignalOnWaylandTest : public EndingOnWaylandTest, public testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        story.bind(bound, target);
        story.bind(another, target);
        story.startUtility(story.leaksReported());
    }
};

TEST_P(SignalOnWaylandTest, EndsWithSuccessAndGivesEveryCombinationBack) {
    ASSERT_TRUE(story.brings(target, front, bound));
    story.utility().signal(GetParam());
    EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.passes(front, another.keys()));
    EXPECT_TRUE(story.passes(target, bound.keys()));
    EXPECT_EQ(target.copies().size(), 1);
}

TEST_P(SignalOnWaylandTest, AsksForItsCombinationsAnewWhenItIsStartedAgain) {
    story.utility().signal(GetParam());
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(story.brings(target, front, another));
}

INSTANTIATE_TEST_SUITE_P(By, SignalOnWaylandTest, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         signalName);

TEST_F(EndingOnWaylandTest, KilledInMidPressItLeavesTheKeyboardUsable) {
    ASSERT_TRUE(story.switchTo(front));
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    killUtility();
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.switchTo(front));
}

TEST_F(EndingOnWaylandTest, KilledInMidPressAndStartedAgainItWorks) {
    ASSERT_TRUE(story.switchTo(front));
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    killUtility();
    story.letGo(bound);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(story.brings(target, front, another));
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(EndingOnWaylandTest, WhatWasTakenOffTheListWhileItWasDeadIsFreeAgain) {
    killUtility();
    story.forgetShortcuts();
    story.bind(another, target);
    story.startUtility();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.brings(target, front, another));
}

TEST_F(EndingOnWaylandTest, WhatItLeftBehindGoesEvenIfItHasNothingToBind) {
    killUtility();
    story.forgetShortcuts();
    story.writeShortcuts();
    story.launchUtility();
    const auto isFree = [&] {
        const auto before = front.downs(story.keycode(bound));
        story.strike(bound);
        return story.getsKeys(front) && front.downs(story.keycode(bound)) > before;
    };
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_TRUE(waitUntil(isFree)) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, another.keys()));
}

// The status depends on who notices first: we end with 0, the toolkit with 1 or 255, none by a
// signal.
TEST_F(EndingOnWaylandTest, WhenTheCompositorIsKilledItEnds) {
    story.session().compositor().signal(SIGKILL);
    EXPECT_THAT(story.utility().wait(), Optional(Ge(0))) << story.utilityTells();
}

} // namespace
} // namespace hollowfernpike
