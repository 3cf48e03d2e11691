#include "desktop/kde/KWinStory.h"

#include <algorithm>
#include <csignal>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class LaunchOnKWinTest : public testing::Test {
protected:
    KWinStory story;
    Application& front = story.open("Front");
};

// The window comes while the utility does nothing, as on a busy machine.
TEST_F(LaunchOnKWinTest, WhatIsLaunchedDoesNotComeBackToUsersWhoHaveMovedOn) {
    auto& target = story.install("Target", {.options = {"--delay", "500"}});
    auto& witness = story.install("Witness");
    story.bind(bound, target);
    story.bind(another, witness);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 1; }));
    story.utility().signal(SIGSTOP);
    ASSERT_TRUE(story.isInFront(target));
    ASSERT_TRUE(story.switchTo(front));
    story.utility().signal(SIGCONT);
    story.strike(another); // which it sees after all that happened before
    ASSERT_TRUE(story.isInFront(witness));
    EXPECT_TRUE(story.getsKeys(witness));
    EXPECT_EQ(
        std::ranges::count_if(
            target.log(), [](const std::string& line) { return line.starts_with("focus-in "); }),
        1);
}

} // namespace
} // namespace hollowfernpike
