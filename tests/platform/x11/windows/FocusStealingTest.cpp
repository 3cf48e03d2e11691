#include "platform/x11/windows/WindowsTest.h"
#include "support/KeyInjector.h"

namespace hollowfernpike::test {

namespace {

/// A window manager that does not let other windows take the focus while the user types.
class FocusStealingTest : public WindowsTest {
protected:
    FocusStealingTest() : WindowsTest("metacity"), keys_(desktop_.display()) {}

    /// The user types into an application; its window notes when.
    void typeInto(Application& application) {
        keys_.strike({"AC01"});
        ASSERT_TRUE(application.process->waitForLine("key-up"));
        ASSERT_TRUE(waitUntil(
            [&] { return !observer_.numbers(application.window(), "_NET_WM_USER_TIME").empty(); }));
    }

    KeyInjector keys_;
};

TEST_F(FocusStealingTest, TheTimeOfThePressDecides) {
    const auto target = openActive("Target");
    auto front = openActive("Front");
    pressKey();
    typeInto(front);
    userTime_.record(userTime_.time() - 1000, {});
    EXPECT_TRUE(windows_.bringToFront(target.pid()));
    EXPECT_TRUE(waitUntil(
        [&] { return observer_.hasState(target.window(), "_NET_WM_STATE_DEMANDS_ATTENTION"); }));
    EXPECT_EQ(observer_.activeWindow(), front.window());

    pressKey();
    EXPECT_TRUE(windows_.bringToFront(target.pid()));
    EXPECT_TRUE(becomesActive(target.window()));
}

TEST_F(FocusStealingTest, ARequestWithoutAnyPressCountsAsMadeNow) {
    const auto target = openActive("Target");
    auto front = openActive("Front");
    typeInto(front);
    EXPECT_TRUE(windows_.bringToFront(target.pid()));
    EXPECT_TRUE(becomesActive(target.window()));
    EXPECT_FALSE(observer_.hasState(target.window(), "_NET_WM_STATE_DEMANDS_ATTENTION"));
}

} // namespace

} // namespace hollowfernpike::test
