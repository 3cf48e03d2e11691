#include "desktop/NewWindowManager.h"
#include "desktop/SignalName.h"
#include "desktop/Story.h"
#include "support/Files.h"
#include "support/Leaks.h"
#include "support/WaitUntil.h"
#include "support/WindowManagers.h"

#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class DisplayGoneTest : public testing::TestWithParam<int> {
protected:
    void SetUp() override {
        story.bind(bound, story.install("Target"));
        story.writeShortcuts();
        story.launchUtility({leaksAllowed()}); // the toolkit forgets a connection that has broken
        EXPECT_TRUE(story.areLive());
    }

    Story story;
};

TEST_P(DisplayGoneTest, ItEndsLeavesItsFileAndTheNextOneWorksOnAnotherDisplay) {
    const auto list = contentsOf(story.shortcutsFile());
    const auto grab = story.grabOf(bound);
    story.desktop.virtualDisplay().server().signal(GetParam());
    const auto status = story.utility().wait();
    ASSERT_TRUE(status.has_value()) << "still running";
    EXPECT_THAT(*status, testing::AnyOf(0, 1)) << "whoever notices first: we, or the toolkit";
    EXPECT_EQ(contentsOf(story.shortcutsFile()), list);
    EXPECT_THAT(namesIn(story.shortcutsFile().parent_path()),
                testing::ElementsAre("shortcuts.json"));

    const VirtualDisplay another;
    XClient prober(another.name());
    story.launchUtility({{"DISPLAY", another.name()}});
    EXPECT_TRUE(waitUntil([&] { return prober.areTaken({grab}); })) << story.utility().errors();
    story.utility().signal(SIGTERM);
    EXPECT_EQ(story.utility().wait(), 0);
}

INSTANTIATE_TEST_SUITE_P(OfAServerThatGets, DisplayGoneTest, testing::Values(SIGTERM, SIGKILL),
                         signalName);

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
