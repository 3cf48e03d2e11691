#include "platform/x11/windows/WindowsTest.h"
#include "support/WindowManagers.h"

#include <gmock/gmock.h>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;

class ProcessActivationTest : public WindowsTest, public testing::WithParamInterface<const char*> {
protected:
    ProcessActivationTest() : WindowsTest(GetParam()) {}

    /// Whether a window lies above another.
    bool isAbove(xcb_window_t upper, xcb_window_t lower) {
        const auto stacking = observer_.stacking();
        return std::ranges::find(stacking, upper) > std::ranges::find(stacking, lower);
    }

    bool isSwitchedTo(std::uint32_t desktop) {
        return waitUntil([&] { return observer_.currentDesktop() == desktop; });
    }

    unsigned int requestsToBringToFront(std::int32_t process) {
        return requestsDuring(connection(), [&] { windows_.bringToFront(process); });
    }

    void minimise(xcb_window_t window) {
        observer_.minimise(window);
        EXPECT_TRUE(waitUntil([&] { return observer_.hasState(window, "_NET_WM_STATE_HIDDEN"); }));
    }

    void moveAway(xcb_window_t window, std::uint32_t desktop) {
        observer_.moveToDesktop(window, desktop);
        EXPECT_TRUE(waitUntil(
            [&] { return observer_.numbers(window, "_NET_WM_DESKTOP") == std::vector{desktop}; }));
    }
};

INSTANTIATE_TEST_SUITE_P(WindowManagers, ProcessActivationTest, windowManagers(),
                         windowManagerName);

TEST_P(ProcessActivationTest, BringsACoveredWindowToTheFront) {
    const auto covered = openActive("Covered");
    const auto covering = openActive("Covering");
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(covered.pid()));
    EXPECT_TRUE(becomesActive(covered.window()));
    EXPECT_TRUE(namesBecome({"Covered", "Covering"}));
    EXPECT_TRUE(waitUntil([&] { return observer_.isFocused(covered.window()); }));
}

TEST_P(ProcessActivationTest, WorksWithoutAnyKeyPress) {
    const auto covered = openActive("Covered");
    const auto covering = openActive("Covering");
    EXPECT_TRUE(windows_.bringToFront(covered.pid()));
    EXPECT_TRUE(becomesActive(covered.window()));
    EXPECT_TRUE(namesBecome({"Covered", "Covering"}));
}

TEST_P(ProcessActivationTest, RestoresAMinimisedWindow) {
    const auto minimised = openActive("Minimised");
    const auto other = openActive("Other");
    minimise(minimised.window());
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(minimised.pid()));
    EXPECT_TRUE(becomesActive(minimised.window()));
    EXPECT_TRUE(namesBecome({"Minimised", "Other"}));
}

TEST_P(ProcessActivationTest, GoesToTheWorkspaceOfTheWindow) {
    const auto away = openActive("Away");
    const auto here = openActive("Here");
    moveAway(away.window(), 2);
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(away.pid()));
    EXPECT_TRUE(isSwitchedTo(2));
    EXPECT_TRUE(becomesActive(away.window()));
    EXPECT_TRUE(namesBecome({"Away"}));
}

TEST_P(ProcessActivationTest, GoesToTheWorkspaceOfAMinimisedWindow) {
    const auto away = openActive("Away");
    const auto here = openActive("Here");
    minimise(away.window());
    moveAway(away.window(), 2);
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(away.pid()));
    EXPECT_TRUE(isSwitchedTo(2));
    EXPECT_TRUE(becomesActive(away.window()));
}

TEST_P(ProcessActivationTest, RaisesAllWindowsOfTheProcessInTheirOrder) {
    const auto several = openActive("Several", {}, 3);
    const auto other = openActive("Other");
    const auto& windows = several.windows;
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(several.pid()));
    EXPECT_TRUE(becomesActive(windows[2]));
    EXPECT_TRUE(waitUntil([&] {
        return observer_.stacking() ==
               std::vector{other.window(), windows[0], windows[1], windows[2]};
    })) << testing::PrintToString(observer_.stacking());
}

TEST_P(ProcessActivationTest, RaisesAllWindowsOnTheWorkspaceThatItGoesTo) {
    const auto several = openActive("Several", {}, 2);
    const auto other = openActive("Other");
    const auto& windows = several.windows;
    for (const auto window : {windows[0], windows[1], other.window()}) {
        moveAway(window, 2);
    }
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(several.pid()));
    EXPECT_TRUE(isSwitchedTo(2));
    EXPECT_TRUE(waitUntil([&] { return observer_.stacking().front() == other.window(); }))
        << testing::PrintToString(observer_.stacking());
}

TEST_P(ProcessActivationTest, ActivatesTheWindowThatWasOnTop) {
    const auto several = openActive("Several", {}, 3);
    const auto& windows = several.windows;
    pressKey();
    observer_.activate(windows[0], userTime_.time());
    ASSERT_TRUE(becomesActive(windows[0]));
    const auto other = openActive("Other");
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(several.pid()));
    EXPECT_TRUE(becomesActive(windows[0]));
    EXPECT_TRUE(waitUntil([&] {
        return observer_.stacking() ==
               std::vector{other.window(), windows[1], windows[2], windows[0]};
    })) << testing::PrintToString(observer_.stacking());
}

TEST_P(ProcessActivationTest, LeavesMinimisedWindowsAloneWhileAnotherIsInSight) {
    const auto both = openActive("Both", {}, 2);
    const auto other = openActive("Other");
    minimise(both.windows[1]);
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(both.pid()));
    EXPECT_TRUE(becomesActive(both.windows[0]));
    EXPECT_TRUE(observer_.hasState(both.windows[1], "_NET_WM_STATE_HIDDEN"));
}

TEST_P(ProcessActivationTest, StaysOnTheWorkspaceWhileAWindowIsInSight) {
    const auto both = openActive("Both", {}, 2);
    const auto other = openActive("Other");
    moveAway(both.windows[1], 1);
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(both.pid()));
    EXPECT_TRUE(becomesActive(both.windows[0]));
    EXPECT_EQ(observer_.currentDesktop(), 0U);
}

TEST_P(ProcessActivationTest, PrefersAWindowOfAnotherWorkspaceToAMinimisedOne) {
    const auto both = openActive("Both", {}, 2);
    const auto other = openActive("Other");
    minimise(both.windows[1]);
    moveAway(both.windows[0], 1);
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(both.pid()));
    EXPECT_TRUE(isSwitchedTo(1));
    EXPECT_TRUE(becomesActive(both.windows[0]));
    EXPECT_TRUE(observer_.hasState(both.windows[1], "_NET_WM_STATE_HIDDEN"));
}

TEST_P(ProcessActivationTest, RestoresOneOfSeveralMinimisedWindows) {
    const auto several = openActive("Several", {}, 2);
    const auto other = openActive("Other");
    minimise(several.windows[0]);
    minimise(several.windows[1]);
    const auto top = isAbove(several.windows[0], several.windows[1]) ? 0U : 1U;
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(several.pid()));
    EXPECT_TRUE(becomesActive(several.windows[top]));
    EXPECT_TRUE(observer_.hasState(several.windows[1 - top], "_NET_WM_STATE_HIDDEN"));
}

TEST_P(ProcessActivationTest, ActivatesTheDialogAboveItsWindow) {
    const auto application = openActive("Application", {"--transient"}, 2);
    const auto other = openActive("Other");
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(application.pid()));
    EXPECT_TRUE(becomesActive(application.windows[1]));
    EXPECT_TRUE(namesBecome({"Application", "Application", "Other"}));
}

TEST_P(ProcessActivationTest, LeavesTheFrontProcessInFront) {
    const auto other = openActive("Other");
    const auto front = openActive("Front");
    for (int press = 0; press < 3; ++press) {
        pressKey();
        EXPECT_TRUE(windows_.bringToFront(front.pid()));
    }
    // Once this one is active, all that the presses did to the front window has happened.
    pressKey();
    EXPECT_TRUE(windows_.bringToFront(other.pid()));
    EXPECT_TRUE(becomesActive(other.window()));
    EXPECT_TRUE(namesBecome({"Other", "Front"}));
}

TEST_P(ProcessActivationTest, FailsForAProcessWithoutOrdinaryWindows) {
    const auto dock = open("Dock", {"--type", "dock"});
    const auto windowless = desktop_.start({HFP_PROBE_WINDOW, "--no-window"});
    pressKey();
    EXPECT_FALSE(windows_.bringToFront(dock.pid()));
    EXPECT_FALSE(windows_.bringToFront(windowless->pid()));
    EXPECT_FALSE(windows_.bringToFront(0));
    EXPECT_FALSE(windows_.bringToFront(-1));
}

TEST_P(ProcessActivationTest, FindsAWindowThatCameAfterTheListOfTheSameTurn) {
    const auto early = openActive("Early");
    pressKey();
    EXPECT_THAT(names(), ElementsAre("Early"));
    const auto late = openActive("Late");
    observer_.activate(early.window(), userTime_.time());
    EXPECT_TRUE(windows_.bringToFront(late.pid()));
    EXPECT_TRUE(becomesActive(late.window()));
}

TEST_P(ProcessActivationTest, AsksNothingAgainWithinOneTurnOfTheMainLoop) {
    const auto covered = openActive("Covered");
    const auto covering = openActive("Covering");
    pressKey();
    EXPECT_TRUE(namesBecome({"Covering", "Covered"}));
    EXPECT_EQ(requestsToBringToFront(covered.pid()), 1U);
    EXPECT_TRUE(becomesActive(covered.window()));
}

TEST_P(ProcessActivationTest, DisturbsNoWindowThatIsInFrontAlready) {
    const auto other = openActive("Other");
    const auto front = openActive("Front", {}, 3);
    pressKey();
    EXPECT_TRUE(namesBecome({"Front", "Front", "Front", "Other"}));
    EXPECT_EQ(requestsToBringToFront(front.pid()), 1U);
}

TEST_P(ProcessActivationTest, AsksAgainInTheNextTurnOfTheMainLoop) {
    const auto covered = openActive("Covered");
    pressKey();
    EXPECT_TRUE(namesBecome({"Covered"}));
    endTurn();
    EXPECT_GT(requestsToBringToFront(covered.pid()), 1U);
}

} // namespace

} // namespace hollowfernpike::test
