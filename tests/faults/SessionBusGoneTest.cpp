#include "desktop/Story.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <csignal>
#include <filesystem>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const Combination bound{37, control | option};
constexpr auto title = "Hollowfernpike - ショートカット管理";
constexpr auto name = "app.hollowfernpike.Hollowfernpike";

/// A session whose bus has an address that outlives it, as the user's bus has.
class SessionBusGoneTest : public testing::Test {
protected:
    void SetUp() override {
        startBus();
        story.bind(bound, target);
        story.writeShortcuts();
        story.launchUtility({{"DBUS_SESSION_BUS_ADDRESS", address()}});
        ASSERT_TRUE(story.areLive());
        ASSERT_TRUE(waitUntil([&] { return answersOnTheBus(); }, 20s));
    }

    std::filesystem::path socket() const { return story.desktop.home() / "run" / "bus"; }
    std::string address() const { return "unix:path=" + socket().string(); }

    void startBus() {
        bus = story.desktop.start({"dbus-daemon", "--session", "--nofork", "--address=" + address(),
                                   "--print-address=1"});
        ASSERT_TRUE(bus->waitForLine("", 20s)) << bus->errors();
    }

    void endBus() {
        bus->signal(SIGKILL);
        ASSERT_TRUE(bus->wait());
        std::filesystem::remove(socket());
    }

    /// Whether the program answers on the bus, out of its event loop: it has started wholly. The
    /// toolkit's bus library does not survive the end of a bus that it is just getting to know.
    bool answersOnTheBus() {
        const auto call = story.desktop.start(
            {"gdbus", "call", "--address", address(), "--dest", name, "--object-path",
             "/app/hollowfernpike/Hollowfernpike", "--method",
             "org.freedesktop.Application.ActivateAction", "nothing", "[]", "{}"});
        return call->wait() == 0;
    }

    bool isShown() {
        return std::ranges::any_of(story.pager.stacking(), [this](xcb_window_t window) {
            return story.pager.titleOf(window) == title;
        });
    }

    void expectThatASecondStartShowsTheWindow() {
        auto environment = story.desktop.environment();
        environment["DBUS_SESSION_BUS_ADDRESS"] = address();
        ChildProcess second({HFP_PROGRAM}, environment);
        EXPECT_EQ(second.wait(20s), 0) << second.errors();
        EXPECT_TRUE(waitUntil([&] { return isShown(); }, 20s));
        EXPECT_FALSE(story.utility().hasEnded());
    }

    Story story;
    std::unique_ptr<ChildProcess> bus;
    Application& front = story.open("Front");
    Application& target = story.install("Target");
};

TEST_F(SessionBusGoneTest, TheProgramLivesOnAndLaunches) {
    endBus();
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_FALSE(story.utility().hasEnded());
}

TEST_F(SessionBusGoneTest, ASecondStartStillFindsTheFirst) {
    endBus();
    expectThatASecondStartShowsTheWindow();
}

TEST_F(SessionBusGoneTest, WhenItHasComeBackASecondStartStillFindsTheFirst) {
    endBus();
    startBus();
    expectThatASecondStartShowsTheWindow();
    EXPECT_TRUE(story.brings(target, front, bound));
}

} // namespace
} // namespace hollowfernpike
