#include "desktop/kde/KWinStory.h"
#include "support/WaitUntil.h"

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
    auto& target = story.install("Target", {.options = {"--delay", "2000"}});
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 1; }));
    story.utility().signal(SIGSTOP);
    ASSERT_TRUE(target.windows().empty());
    ASSERT_TRUE(story.isInFront(target));
    ASSERT_TRUE(story.switchTo(front));
    story.utility().signal(SIGCONT);
    // It would bring the window forward before it serves what asks for its own.
    ASSERT_EQ(story.session().start({story.program()})->wait(), 0);
    ASSERT_TRUE(waitUntil([&] {
        return std::ranges::any_of(story.pager.windows(), [&](const PagerWindow& window) {
            return window.process == story.utility().pid() && window.isFocused;
        });
    }));
    EXPECT_EQ(
        std::ranges::count_if(
            target.log(), [](const std::string& line) { return line.starts_with("focus-in "); }),
        1);
}

} // namespace
} // namespace hollowfernpike
