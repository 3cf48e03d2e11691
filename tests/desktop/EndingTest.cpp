#include "desktop/SignalName.h"
#include "desktop/Story.h"
#include "support/WaitUntil.h"

#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class EndingTest : public testing::Test {
protected:
    Story story;
    Application& front = story.open("Front");
    Application& target = story.install("Target");

    void SetUp() override {
        story.bind(bound, target);
        story.bind(another, front);
        story.startUtility();
    }

    void pressBound() {
        for (const auto& key : bound.keys()) {
            story.keyboard.press(key);
        }
    }

    void releaseBound() {
        for (const auto& key : bound.keys()) {
            story.keyboard.release(key);
        }
    }
};

class SignalTest : public EndingTest, public testing::WithParamInterface<int> {};

TEST_P(SignalTest, EndsWithSuccessAndLeavesNothingButWhatItLaunched) {
    story.strike(bound);
    ASSERT_TRUE(story.isInFront(target));
    story.utility().signal(GetParam());
    EXPECT_EQ(story.utility().wait(), 0) << story.utility().errors();

    XClient successor(story.desktop.display());
    EXPECT_TRUE(successor.grab(story.grabOf(bound)));
    EXPECT_TRUE(successor.grab(story.grabOf(another)));
    EXPECT_EQ(target.copies().size(), 1);
    EXPECT_TRUE(story.getsKeys(target));
}

INSTANTIATE_TEST_SUITE_P(By, SignalTest, testing::Values(SIGTERM, SIGINT, SIGHUP), signalName);

TEST_F(EndingTest, KilledWhileACombinationIsHeldItLeavesTheKeyboardUsable) {
    pressBound();
    ASSERT_TRUE(story.isInFront(target));
    story.utility().signal(SIGKILL);
    ASSERT_EQ(story.utility().wait(), -SIGKILL);
    releaseBound();
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

TEST_F(EndingTest, KilledBeforeItGaveTheKeyboardBackItLeavesTheKeyboardUsable) {
    story.utility().signal(SIGSTOP);
    pressBound();
    releaseBound();
    story.utility().signal(SIGKILL);
    ASSERT_EQ(story.utility().wait(), -SIGKILL);
    EXPECT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_EQ(target.starts(), 0);
}

TEST_F(EndingTest, StoppedInMidPressItHoldsTheKeysUpAndLosesNone) {
    story.utility().signal(SIGSTOP);
    pressBound();
    constexpr int letters = 5;
    for (int letter = 0; letter < letters; ++letter) {
        story.keyboard.strike({"AD01"});
    }
    releaseBound();
    story.utility().signal(SIGCONT);
    EXPECT_TRUE(waitUntil([&] { return target.starts() == 1; }));
    const auto key = story.keyboard.keycode("AD01");
    EXPECT_TRUE(waitUntil([&] { return front.downs(key) + target.downs(key) == letters; }));
    EXPECT_TRUE(waitUntil([&] { return front.ups(key) + target.ups(key) == letters; }));
}

TEST_F(EndingTest, AProgramThatCrashesOnAKeyPressDoesNotDisturbIt) {
    auto& fragile = story.open("Fragile", {.options = {"--exit-on-key"}});
    story.keyboard.strike({"AD01"});
    ASSERT_TRUE(waitUntil([&] { return fragile.copies().empty(); }));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_FALSE(story.utility().hasEnded());
}

} // namespace
} // namespace hollowfernpike
