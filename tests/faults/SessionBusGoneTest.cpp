#include "desktop/Story.h"
#include "support/Leaks.h"
#include "support/WaitUntil.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr auto title = "Hollowfernpike - ショートカット管理";
constexpr auto busName = "app.hollowfernpike.Hollowfernpike";

class EndingBusTest : public testing::Test {
protected:
    EndingBusTest() {
        story.bind(bound, target);
        story.writeShortcuts();
    }

    /// Whether the program answers on the bus. It answers from its event loop, so it has started
    /// completely then.
    bool answersOnTheBus() {
        const auto call = story.desktop.start(
            {"gdbus", "call", "--session", "--dest", busName, "--object-path",
             "/app/hollowfernpike/Hollowfernpike", "--method",
             "org.freedesktop.Application.ActivateAction", "nothing", "[]", "{}"});
        return call->wait(2s) == 0;
    }

    /// Starts a panel and expects it to be told of the item.
    void expectThatAPanelShowsTheItem() {
        const auto panel = story.desktop.start({HFP_STATUS_HOST, "--with-host"});
        EXPECT_TRUE(panel->waitForLine("item ")) << panel->output() << panel->errors();
    }

    bool isInFront() {
        const auto window = story.pager.activeWindow();
        return story.pager.focusedWindow() == window && story.pager.titleOf(window) == title;
    }

    void expectThatASecondStartShowsTheWindow() {
        story.run({HFP_PROGRAM});
        EXPECT_TRUE(waitUntil([&] { return isInFront(); }));
        EXPECT_FALSE(story.utility().hasEnded());
    }

    /// Closes the window; all that the program has asked for on its behalf is over then.
    void closeTheWindow() {
        story.pager.close(story.pager.activeWindow());
        EXPECT_TRUE(waitUntil([&] { return !isInFront(); }));
    }

    Story story;
    SessionBus& bus = story.desktop.bus();
    Application& front = story.open("Front");
    Application& target = story.install("Target");
};

class SessionBusGoneTest : public EndingBusTest {
protected:
    void SetUp() override {
        story.launchUtility();
        ASSERT_TRUE(story.areLive());
        ASSERT_TRUE(waitUntil([&] { return answersOnTheBus(); }));
    }
};

/// Ends the bus at many moments of a start, from the first instruction until all is quiet. In one
/// of some hundred cases the toolkit waits for ever for the accessibility bus, which we cannot
/// prevent; but the program never crashes.
TEST_F(EndingBusTest, DoesNotCrashAProgramThatIsStarting) {
    using Clock = std::chrono::steady_clock;
    constexpr int rounds = 40;
    // Newer toolkits leak the requests that are open when the bus ends.
    Clock::duration start{};
    for (int round = 0; round <= rounds; ++round) {
        const auto begin = Clock::now();
        story.launchUtility({leaksAllowed()});
        if (round == 0) {
            ASSERT_TRUE(waitUntil([&] { return answersOnTheBus(); }));
            start = Clock::now() - begin;
        }
        std::this_thread::sleep_until(begin + start * round / rounds);
        bus.end();
        std::this_thread::sleep_for(start / 4); // it notices the end of the bus before our signal
        story.utility().signal(SIGTERM);
        const auto status = story.utility().wait(5s).value_or(0);
        ASSERT_TRUE(status == 0 || status == -SIGTERM) << round << story.utilityTells();
        bus.startAgain();
    }
}

TEST_F(SessionBusGoneTest, TheProgramLivesOnAndLaunches) {
    bus.end();
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(SessionBusGoneTest, ASecondStartStillFindsTheFirst) {
    bus.end();
    expectThatASecondStartShowsTheWindow();
}

TEST_F(SessionBusGoneTest, WhenItHasComeBackASecondStartStillFindsTheFirst) {
    bus.end();
    bus.startAgain();
    expectThatASecondStartShowsTheWindow();
    closeTheWindow();
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(SessionBusGoneTest, WhenItHasComeBackTheProgramAnswersThereAgain) {
    for (int round = 0; round < 2; ++round) {
        bus.end();
        bus.startAgain();
        EXPECT_TRUE(waitUntil([&] { return answersOnTheBus(); }));
    }
}

TEST_F(SessionBusGoneTest, WhenItHasComeBackPanelsShowTheItemAgain) {
    expectThatAPanelShowsTheItem();
    for (int round = 0; round < 2; ++round) {
        bus.end();
        bus.startAgain();
        expectThatAPanelShowsTheItem();
    }
}

} // namespace
} // namespace hollowfernpike
