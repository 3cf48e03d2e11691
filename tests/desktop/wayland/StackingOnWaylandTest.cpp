#include "desktop/wayland/StackingStory.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class StackingOnWaylandTest : public testing::Test {
    std::unique_ptr<StackingStory> story_ = makeStackingStory();

protected:
    StackingStory& story = *story_;

    static pid_t processOf(const Application& application) { return application.copies().at(0); }
    bool isVisible(const Application& application) {
        return story.pager.windowOf(processOf(application))->isVisible;
    }
};

TEST_F(StackingOnWaylandTest, AMinimisedWindowComesBack) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    story.minimize(processOf(target));
    ASSERT_TRUE(waitUntil([&] { return !isVisible(target); }));
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_TRUE(isVisible(target));
}

TEST_F(StackingOnWaylandTest, AllVisibleWindowsOfTheProcessComeForward) {
    auto& target = story.open("Target", {.options = {"--windows", "2"}});
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    const std::vector expected{processOf(target), processOf(target), processOf(front)};
    EXPECT_TRUE(waitUntil([&] { return story.order() == expected; }));
}

TEST_F(StackingOnWaylandTest, AMinimisedWindowOnAnotherWorkspaceComesBack) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    const auto away = story.pager.otherWorkspace();
    story.pager.moveToWorkspace(processOf(target), away);
    story.minimize(processOf(target));
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(story.pager.workspace(), away);
}

} // namespace
} // namespace hollowfernpike
