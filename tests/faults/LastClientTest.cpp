#include "desktop/Story.h"

#include <csignal>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

// Between two connections of its only client such a server ends, and others begin anew.
TEST(LastClientTest, ItStartsOnAServerThatEndsWithItsLastClient) {
    Story story;
    ChildProcess server({"Xvfb", "-displayfd", "1", "-terminate", "-nolisten", "tcp"});
    const auto number = server.waitForLine("");
    ASSERT_TRUE(number) << server.errors();

    story.launchUtility({{"DISPLAY", ':' + *number}});
    story.run(
        {"gdbus", "wait", "--session", "--timeout", "30", "app.hollowfernpike.Hollowfernpike"});
    EXPECT_FALSE(server.hasEnded());
    EXPECT_FALSE(story.utility().hasEnded()) << story.utilityTells();

    story.utility().signal(SIGTERM);
    EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_EQ(server.wait(), 0);
}

} // namespace
} // namespace hollowfernpike
