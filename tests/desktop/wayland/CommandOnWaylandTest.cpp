#include "desktop/wayland/OnWayland.h"
#include "support/Leaks.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// A command stands for a press.
class CommandOnWaylandTest : public OnWayland {};

TEST_F(CommandOnWaylandTest, BringsTheApplicationForwardAsThePressItselfDoes) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(story.switchTo(front));
        const auto press =
            story.session().start({story.program(), "--press", "⌃⌥L"}, Environment{leaksAllowed()});
        EXPECT_EQ(press->wait(), 0) << press->errors();
        EXPECT_TRUE(story.isInFront(target));
        EXPECT_TRUE(story.getsKeys(target));
    }
    EXPECT_TRUE(story.brings(target, front, bound)) << "the keys work as before";
    EXPECT_EQ(target.starts(), 1);
}

} // namespace
} // namespace hollowfernpike
