#include "desktop/sway/SocketRelay.h"
#include "desktop/sway/SwayStory.h"
#include "support/WaitUntil.h"

#include <csignal>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// The utility reaches sway's socket through a relay, which fails.
class BrokenSocketOnSwayTest : public testing::Test {
protected:
    SwayStory story;
    Application& front = story.open("Front");
    Application& target = story.open("Target");
    std::string path = (story.desktop.commonGround() / "relay").string();
    SocketRelay relay{path, story.desktop.environment().at("SWAYSOCK").value()};

    void SetUp() override {
        story.bind(bound, target);
        story.startUtility({{"SWAYSOCK", path}});
        ASSERT_TRUE(story.brings(target, front, bound));
    }

    void endsOnRequest() {
        story.utility().signal(SIGTERM);
        EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
    }
};

TEST_F(BrokenSocketOnSwayTest, ABrokenConnectionIsMadeAnew) {
    const auto before = story.bindings();
    relay.breakConnections();
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(story.brings(target, front, bound));
    endsOnRequest();
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

TEST_F(BrokenSocketOnSwayTest, ASocketThatVanishesAndComesBackIsFound) {
    relay.vanish();
    ASSERT_TRUE(waitUntil([&] {
        const auto told = story.utilityTells();
        return told.find("fails") != told.rfind("fails");
    })) << "it has tried twice: "
        << story.utilityTells();
    const auto before = story.bindings();
    relay.comeBack();
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(BrokenSocketOnSwayTest, AReloadThatItMissesDoesNoHarm) {
    relay.vanish();
    story.desktop.ipc().reload();
    const auto before = story.bindings();
    relay.comeBack();
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(BrokenSocketOnSwayTest, WithoutASocketItEndsOnRequest) {
    relay.vanish();
    endsOnRequest();
}

TEST_F(BrokenSocketOnSwayTest, WhenNobodyAnswersItEndsOnRequest) {
    ASSERT_TRUE(story.switchTo(front));
    relay.fallSilent();
    endsOnRequest();
}

TEST_F(BrokenSocketOnSwayTest, WhatItCouldNotTakeBackIsFoundByTheNextRun) {
    relay.vanish();
    endsOnRequest();
    relay.comeBack();
    story.forgetShortcuts();
    story.bind(another, target);
    story.startUtility({{"SWAYSOCK", path}});
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.brings(target, front, another));
}

} // namespace
} // namespace hollowfernpike
