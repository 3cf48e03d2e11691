#include "desktop/sway/SwayStory.h"
#include "desktop/wayland/Ending.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <memory>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::Ge;
using testing::Optional;

class EndingOnSwayTest : public Ending {
protected:
    EndingOnSwayTest() : Ending(std::make_unique<SwayStory>()) {}

    SwayStory& onSway = static_cast<SwayStory&>(story);
};

TEST_F(EndingOnSwayTest, WhatOthersBindMeanwhileStays) {
    onSway.sway.run("bindcode Control+Mod1+41 workspace mine");
    story.utility().signal(SIGTERM);
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    ASSERT_TRUE(story.switchTo(front));
    story.keyboard.strike({"LCTL", "LALT", "AC04"});
    EXPECT_TRUE(waitUntil([&] { return story.pager.workspace() == "mine"; }));
}

TEST_F(EndingOnSwayTest, KilledBeforeAReloadItBindsAnewWhenItIsStartedAgain) {
    killUtility();
    onSway.desktop.ipc().reload();
    ASSERT_TRUE(story.passes(front, bound.keys()))
        << "a reload takes away what commands have bound";
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(EndingOnSwayTest, WhatTheUserHasBoundSinceItWasKilledIsNotTakenBack) {
    killUtility();
    onSway.desktop.configure("bindcode Control+Mod1+45 workspace mine");
    onSway.desktop.ipc().reload();
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
        onSway.desktop.ipc().reload();
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
    onSway.desktop.ipc().reload();
    story.letGo(bound);
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(SwayGoingOnTest, AfterAReloadItStillGivesEveryCombinationBack) {
    const auto before = story.bindings();
    onSway.desktop.ipc().reload();
    ASSERT_TRUE(story.bindsAgain(before));
    story.utility().signal(SIGTERM);
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.passes(front, another.keys()));
}

// The status depends on who notices first: we end with 0, the toolkit with 1 or 255, none by a
// signal.
TEST_F(SwayGoingOnTest, WhenTheUserEndsSwayItEnds) {
    onSway.desktop.ipc().exit();
    EXPECT_THAT(story.utility().wait(), Optional(Ge(0))) << story.utilityTells();
}

} // namespace
} // namespace hollowfernpike
