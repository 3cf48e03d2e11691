#include "desktop/ActivationRequests.h"
#include "desktop/Story.h"
#include "support/WaitUntil.h"
#include "support/WindowManagers.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class TargetsTest : public testing::TestWithParam<const char*> {
protected:
    TargetsTest() { story.turnRepetitionOff(); }

    Story story{GetParam()};

    /// Opens the target, then another application that covers it, and starts the utility.
    Application& coveredTarget(const ApplicationTraits& traits = {}) {
        auto& target = story.open("Target", traits);
        EXPECT_TRUE(waitUntil([&] { return target.windows().size() == windowCount(traits); }));
        front = &story.open("Front");
        story.bind(bound, target);
        story.startUtility();
        return target;
    }

    static std::size_t windowCount(const ApplicationTraits& traits) {
        return traits.options.empty() ? 1 : std::stoul(traits.options.back());
    }

    void minimise(xcb_window_t window) {
        story.pager.minimise(window);
        ASSERT_TRUE(waitUntil([&] { return story.pager.isMinimised(window); }));
    }

    /// Where the window lies among all of them; the lowest is 0.
    std::ptrdiff_t height(xcb_window_t window) {
        const auto stacking = story.pager.stacking();
        return std::ranges::find(stacking, window) - stacking.begin();
    }

    bool liesAboveFront(xcb_window_t window) {
        return waitUntil([&] { return height(window) > height(front->windows().at(0)); });
    }

    void becomesWorkspaces(std::uint32_t count) {
        story.pager.setWorkspaceCount(count);
        ASSERT_TRUE(waitUntil([&] { return story.pager.workspaceCount() == count; }));
    }

    Application* front = nullptr;
};

TEST_P(TargetsTest, ACoveredWindowComesToTheTop) {
    auto& target = coveredTarget();
    const auto window = target.windows().at(0);
    ASSERT_FALSE(height(window) > height(front->windows().at(0)));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(liesAboveFront(window));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_P(TargetsTest, AMinimisedWindowComesBack) {
    auto& target = coveredTarget();
    const auto window = target.windows().at(0);
    minimise(window);
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_FALSE(story.pager.isMinimised(window));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(TargetsTest, AWindowOnAnotherWorkspaceTakesUsThere) {
    auto& target = coveredTarget();
    const auto window = target.windows().at(0);
    becomesWorkspaces(3);
    story.pager.moveToWorkspace(window, 2);
    ASSERT_TRUE(waitUntil([&] { return story.pager.workspaceOf(window) == 2; }));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(story.pager.currentWorkspace(), 2);
    EXPECT_EQ(story.pager.workspaceOf(window), 2);
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(TargetsTest, AMinimisedWindowOnAnotherWorkspaceComesBackThere) {
    auto& target = coveredTarget();
    const auto window = target.windows().at(0);
    becomesWorkspaces(3);
    minimise(window); // first, as metacity calls every window of another workspace minimised
    story.pager.moveToWorkspace(window, 1);
    ASSERT_TRUE(waitUntil([&] { return story.pager.workspaceOf(window) == 1; }));
    ASSERT_TRUE(story.pager.isMinimised(window));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(story.pager.currentWorkspace(), 1);
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(TargetsTest, SeveralWindowsAllComeForwardInTheirOrder) {
    auto& target = coveredTarget({.options = {"--windows", "3"}});
    const auto windows = target.windows();
    std::vector<xcb_window_t> before;
    std::ranges::copy_if(story.pager.stacking(), std::back_inserter(before), [&](auto window) {
        return std::ranges::find(windows, window) != windows.end();
    });
    ASSERT_EQ(before.size(), 3);
    story.strike(bound);
    EXPECT_TRUE(story.isActive(before.back()));
    for (const auto window : before) {
        EXPECT_TRUE(liesAboveFront(window));
    }
    EXPECT_LT(height(before[0]), height(before[1]));
    EXPECT_LT(height(before[1]), height(before[2]));
}

TEST_P(TargetsTest, ADialogComesForwardTogetherWithItsWindow) {
    auto& target = coveredTarget({.options = {"--transient", "--windows", "2"}});
    const auto windows = target.windows();
    story.strike(bound);
    EXPECT_TRUE(story.isActive(windows.at(1)));
    EXPECT_TRUE(liesAboveFront(windows.at(0)));
    EXPECT_LT(height(windows.at(0)), height(windows.at(1)));
}

TEST_P(TargetsTest, TheApplicationInFrontStaysThere) {
    auto& target = coveredTarget();
    const auto window = target.windows().at(0);
    ASSERT_TRUE(story.switchTo(target));
    ActivationRequests requests(story.desktop.display());
    for (std::size_t round = 1; round <= 3; ++round) {
        story.strike(bound);
        ASSERT_TRUE(waitUntil([&] { return requests.count() == round; }));
        EXPECT_TRUE(story.getsKeys(target));
        EXPECT_TRUE(story.isActive(window));
    }
    EXPECT_FALSE(story.pager.isMinimised(window));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_P(TargetsTest, AWindowlessApplicationIsAskedByItsEntryToShowItself) {
    auto& target = story.install("Target", {.options = {"--no-window"}});
    target.start();
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 1; }));
    front = &story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return target.starts() == 2; }));
    EXPECT_TRUE(story.getsKeys(*front));
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_P(TargetsTest, OfTwoHiddenInstancesTheLongestRunningComesForward) {
    auto& target = story.open("Target");
    const auto older = target.windows().at(0);
    target.start();
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 2; }));
    const auto younger = target.windows().at(1);
    front = &story.open("Front");
    minimise(younger);
    minimise(older);
    story.bind(bound, target);
    story.startUtility();
    story.strike(bound);
    EXPECT_TRUE(story.isActive(older));
    EXPECT_TRUE(story.pager.isMinimised(younger));
    EXPECT_EQ(target.starts(), 2);
}

TEST_P(TargetsTest, AVisibleInstanceGoesBeforeALongerRunningHiddenOne) {
    auto& target = story.open("Target");
    const auto older = target.windows().at(0);
    target.start();
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 2; }));
    const auto younger = target.windows().at(1);
    front = &story.open("Front");
    minimise(older);
    story.bind(bound, target);
    story.startUtility();
    story.strike(bound);
    EXPECT_TRUE(story.isActive(younger));
    EXPECT_TRUE(story.pager.isMinimised(older));
    EXPECT_EQ(target.starts(), 2);
}

INSTANTIATE_TEST_SUITE_P(Under, TargetsTest, windowManagers(), windowManagerName);

} // namespace
} // namespace hollowfernpike
