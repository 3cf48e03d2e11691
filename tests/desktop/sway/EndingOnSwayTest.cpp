#include "desktop/SignalName.h"
#include "desktop/sway/SwayStory.h"
#include "support/Leaks.h"
#include "support/WaitUntil.h"

#include <csignal>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::Ge;
using testing::Optional;

class EndingOnSwayTest : public testing::Test {
protected:
    SwayStory story;
    Application& front = story.open("Front");
    Application& target = story.open("Target");

    void SetUp() override {
        story.bind(bound, target);
        story.bind(another, target);
        story.startUtility();
    }

    void killUtility() {
        story.utility().signal(SIGKILL);
        ASSERT_EQ(story.utility().wait(), -SIGKILL);
    }
};

class SignalOnSwayTest : public EndingOnSwayTest, public testing::WithParamInterface<int> {
protected:
    void SetUp() override {
        story.bind(bound, target);
        story.bind(another, target);
        story.startUtility(leaksReported());
    }
};

TEST_P(SignalOnSwayTest, EndsWithSuccessAndGivesEveryCombinationBack) {
    ASSERT_TRUE(story.brings(target, front, bound));
    story.utility().signal(GetParam());
    EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.passes(front, another.keys()));
    EXPECT_TRUE(story.passes(target, bound.keys()));
    EXPECT_EQ(target.copies().size(), 1);
}

TEST_P(SignalOnSwayTest, AsksForItsCombinationsAnewWhenItIsStartedAgain) {
    story.utility().signal(GetParam());
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(story.brings(target, front, another));
}

INSTANTIATE_TEST_SUITE_P(By, SignalOnSwayTest, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         signalName);

TEST_F(EndingOnSwayTest, KilledInMidPressItLeavesTheKeyboardUsable) {
    ASSERT_TRUE(story.switchTo(front));
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    killUtility();
    story.letGo(bound);
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.switchTo(front));
}

TEST_F(EndingOnSwayTest, KilledInMidPressAndStartedAgainItWorks) {
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

TEST_F(EndingOnSwayTest, WhatWasTakenOffTheListWhileItWasDeadIsFreeAgain) {
    killUtility();
    story.forgetShortcuts();
    story.bind(another, target);
    story.startUtility();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.brings(target, front, another));
}

TEST_F(EndingOnSwayTest, WhatItLeftBehindGoesEvenIfItHasNothingToBind) {
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

TEST_F(EndingOnSwayTest, WhatOthersBindMeanwhileStays) {
    story.pager.run("bindcode Control+Mod1+41 workspace mine");
    story.utility().signal(SIGTERM);
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    ASSERT_TRUE(story.switchTo(front));
    story.keyboard.strike({"LCTL", "LALT", "AC04"});
    EXPECT_TRUE(waitUntil([&] { return story.pager.workspace() == "mine"; }));
}

TEST_F(EndingOnSwayTest, KilledBeforeAReloadItBindsAnewWhenItIsStartedAgain) {
    killUtility();
    story.desktop.ipc().reload();
    ASSERT_TRUE(story.passes(front, bound.keys()))
        << "a reload takes away what commands have bound";
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(EndingOnSwayTest, WhatTheUserHasBoundSinceItWasKilledIsNotTakenBack) {
    killUtility();
    story.desktop.configure("bindcode Control+Mod1+45 workspace mine");
    story.desktop.ipc().reload();
    story.startUtility();
    for (int run = 0; run < 2; ++run) {
        ASSERT_TRUE(story.switchTo(front));
        story.strike({40, control | option});
        EXPECT_TRUE(waitUntil([&] { return story.pager.workspace() == "mine"; })) << run;
        story.utility().signal(SIGTERM);
        ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    }
}

class SwayGoingOnTest : public EndingOnSwayTest {};

TEST_F(SwayGoingOnTest, AfterEachReloadTheCombinationsWorkAgain) {
    for (int round = 0; round < 3; ++round) {
        const auto before = story.bindings();
        story.desktop.ipc().reload();
        ASSERT_TRUE(story.bindsAgain(before));
        EXPECT_TRUE(story.brings(target, front, bound));
        EXPECT_TRUE(story.brings(target, front, another));
    }
    EXPECT_TRUE(story.nobodySaw(bound));
    EXPECT_TRUE(story.passes(front, {"LCTL", "LFSH", "AC09"}));
}

TEST_F(SwayGoingOnTest, AReloadInMidPressDoesNoHarm) {
    ASSERT_TRUE(story.switchTo(front));
    const auto before = story.bindings();
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    story.desktop.ipc().reload();
    story.letGo(bound);
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(SwayGoingOnTest, AfterAReloadItStillGivesEveryCombinationBack) {
    const auto before = story.bindings();
    story.desktop.ipc().reload();
    ASSERT_TRUE(story.bindsAgain(before));
    story.utility().signal(SIGTERM);
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.passes(front, another.keys()));
}

// The status depends on who notices first: we end with 0, the toolkit with 1 or 255, none by a
// signal.
TEST_F(SwayGoingOnTest, WhenTheUserEndsSwayItEnds) {
    story.desktop.ipc().exit();
    EXPECT_THAT(story.utility().wait(), Optional(Ge(0))) << story.utilityTells();
}

TEST_F(SwayGoingOnTest, WhenSwayIsKilledItEnds) {
    story.desktop.sway().signal(SIGKILL);
    EXPECT_THAT(story.utility().wait(), Optional(Ge(0))) << story.utilityTells();
}

} // namespace
} // namespace hollowfernpike
