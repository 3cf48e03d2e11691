#include "desktop/NewWindowManager.h"
#include "desktop/WindowManagers.h"
#include "support/WaitUntil.h"

#include <csignal>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class WindowManagerGoneTest : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        story.bind(bound, target);
        story.bind(another, front);
        story.startUtility();
    }

    void startSuccessor(const std::vector<std::string>& command) {
        successor = startNewWindowManager(story, command);
    }

    void expectThatBoundPressesWork() {
        EXPECT_TRUE(story.brings(target, front, bound));
        EXPECT_TRUE(story.brings(front, target, another));
        EXPECT_FALSE(story.utility().hasEnded());
    }

    Story story{GetParam()};
    std::unique_ptr<ChildProcess> successor;
    Application& target = story.open("Target");
    Application& front = story.open("Front");
};

TEST_P(WindowManagerGoneTest, BoundPressesWorkAfterItHasCrashedAndStartedAgain) {
    story.desktop.windowManager().signal(SIGKILL);
    ASSERT_TRUE(story.desktop.windowManager().wait());
    story.strike(bound);
    startSuccessor({GetParam()});
    expectThatBoundPressesWork();
}

TEST_P(WindowManagerGoneTest, BoundPressesWorkAfterAnotherOneHasTakenItsPlace) {
    const std::string other = GetParam() == std::string{"openbox"} ? "metacity" : "openbox";
    startSuccessor({other, "--replace"});
    expectThatBoundPressesWork();
}

TEST_P(WindowManagerGoneTest, WithoutAnyABoundPressIsSwallowedAndLaunches) {
    auto& sleeper = story.install("Sleeper");
    const Combination added{40, control | option};
    story.bind(added, sleeper);
    story.utility().signal(SIGTERM);
    ASSERT_TRUE(story.utility().wait());
    story.startUtility();
    story.desktop.windowManager().signal(SIGKILL);
    ASSERT_TRUE(story.desktop.windowManager().wait());
    story.strike(added);
    EXPECT_TRUE(waitUntil([&] { return sleeper.starts() == 1; }));
    startSuccessor({GetParam()});
    EXPECT_TRUE(story.brings(sleeper, front, added));
    EXPECT_EQ(sleeper.starts(), 1);
}

INSTANTIATE_TEST_SUITE_P(Of, WindowManagerGoneTest, windowManagers(), windowManagerName);

} // namespace
} // namespace hollowfernpike
