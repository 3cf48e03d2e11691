#include "desktop/wayland/OnWayland.h"
#include "support/WaitUntil.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class LaunchOnWaylandTest : public OnWayland {
protected:
    Application& front = story.open("Front");
};

TEST_F(LaunchOnWaylandTest, AnApplicationThatDoesNotRunStartsOnceAndGetsTheKeys) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.brings(target, front, bound)) << "running by now";
    EXPECT_EQ(target.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(LaunchOnWaylandTest, WhatIsLaunchedComesBeforeAFullscreenWindow) {
    auto& target = story.install("Target", {.options = {"--delay", "200"}});
    story.bind(bound, target);
    story.startUtility();
    story.pager.makeFullscreen(front.copies().at(0));
    ASSERT_TRUE(story.getsKeys(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(LaunchOnWaylandTest, APressDuringTheLaunchStartsNoSecondCopy) {
    auto& target = story.install("Target", {.options = {"--delay", "500"}});
    auto& witness = story.install("Witness");
    story.bind(bound, target);
    story.bind(another, witness);
    story.startUtility();
    story.strike(bound);
    story.strike(bound);
    story.strike(another);
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 1; }));
    ASSERT_TRUE(waitUntil([&] { return witness.windows().size() == 1; }));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_EQ(target.copies().size(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_F(LaunchOnWaylandTest, AnApplicationWhoseWindowWasClosedIsLaunchedAnew) {
    auto& target = story.open("Target");
    story.bind(bound, target);
    story.startUtility();
    story.pager.close(target.copies().at(0));
    ASSERT_TRUE(waitUntil([&] { return target.copies().empty(); }));
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(target.starts(), 2);
    EXPECT_EQ(target.copies().size(), 1);
}

TEST_F(LaunchOnWaylandTest, AMissingProgramSwallowsThePressAndTheNextShortcutWorks) {
    auto& target = story.install("Target");
    auto& gone = story.install("Gone");
    std::filesystem::remove(gone.program());
    story.bind(bound, gone);
    story.bind(another, target);
    story.startUtility();
    story.strike(bound);
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.isInFront(front));
    story.strike(another);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.nobodySaw(bound));
}

} // namespace
} // namespace hollowfernpike
