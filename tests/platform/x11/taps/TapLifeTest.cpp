#include "platform/x11/taps/KeyTapTest.h"
#include "support/XClient.h"

#include <csignal>

namespace hollowfernpike::test {

namespace {

class TapLifeTest : public KeyTapTest {
protected:
    std::unique_ptr<ListeningTap> makeWatchingTap() {
        auto tap = makeActiveTap();
        tap->watch({combination(keyX, flags::control), combination(keyC, flags::control)});
        return tap;
    }

    bool isFree() {
        XClient client(display_.name());
        return client.isFree({keyboard_.keycode("AB02"), XCB_MOD_MASK_CONTROL}) &&
               client.isFree({keyboard_.keycode("AB03"),
                              XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2});
    }

    /// Makes a press that the tap has taken and not yet been told of.
    void pressUnnoticed() {
        keyboard_.strike({"LCTL", "AB02"});
        ASSERT_NE(keyboard_.keycode("AB02"), 0);
    }

    /// Strikes a key and expects a new tap to report it, after all that came before.
    void expectKeyboardAlive() {
        auto tap = makeListenOnlyTap();
        keyboard_.strike({"AB04"});
        EXPECT_TRUE(delivered(*tap, 1));
    }
};

TEST_F(TapLifeTest, HoldsNothingUntilItIsEnabled) {
    ListeningTap tap(taps_, platform::EventTapOptions::active);
    tap.watch({combination(keyX, flags::control)});
    EXPECT_TRUE(isFree());
    tap.tap().enable(true);
    EXPECT_FALSE(isFree());
}

TEST_F(TapLifeTest, HoldsNothingUntilItIsAttached) {
    ListeningTap tap(taps_, platform::EventTapOptions::active);
    tap.source().removeFromMainRunLoop();
    tap.watch({combination(keyX, flags::control)});
    tap.tap().enable(true);
    EXPECT_TRUE(isFree());
    tap.source().addToMainRunLoop();
    EXPECT_FALSE(isFree());
}

TEST_F(TapLifeTest, GivesEverythingBackWhenDisabled) {
    auto tap = makeWatchingTap();
    ASSERT_FALSE(isFree());
    tap->tap().enable(false);
    EXPECT_TRUE(isFree());
}

TEST_F(TapLifeTest, GivesEverythingBackWhenDetached) {
    auto tap = makeWatchingTap();
    tap->source().removeFromMainRunLoop();
    EXPECT_TRUE(isFree());
}

TEST_F(TapLifeTest, GivesEverythingBackWhenInvalidated) {
    auto tap = makeWatchingTap();
    tap->tap().invalidate();
    EXPECT_TRUE(isFree());
}

TEST_F(TapLifeTest, GivesEverythingBackWhenDestroyed) {
    makeWatchingTap().reset();
    EXPECT_TRUE(isFree());
}

TEST_F(TapLifeTest, TakesNoHarmFromUseAfterItsEnd) {
    auto tap = makeWatchingTap();
    tap->tap().invalidate();
    tap->tap().invalidate();
    tap->tap().enable(true);
    tap->watch({combination(keyX, flags::control)});
    EXPECT_TRUE(tap->tap().listenOnlyCombinations().empty());
    tap->source().removeFromMainRunLoop();
    tap->source().addToMainRunLoop();
    EXPECT_TRUE(isFree());
    EXPECT_EQ(connectionsLost_, 0);
}

TEST_F(TapLifeTest, ReportsNoPressAfterItWasDisabled) {
    auto tap = makeWatchingTap();
    pressUnnoticed();
    tap->tap().enable(false);
    expectKeyboardAlive();
    EXPECT_TRUE(tap->presses.empty());
}

TEST_F(TapLifeTest, ReportsNoPressOfAnEarlierEnabling) {
    auto tap = makeWatchingTap();
    pressUnnoticed();
    tap->tap().enable(false);
    tap->tap().enable(true);
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(delivered(*tap, 1));
    EXPECT_EQ(tap->presses.size(), 1U);
    EXPECT_EQ(tap->presses[0].keyCode, keyC);
}

TEST_F(TapLifeTest, ReportsAPressTakenBeforeItWasEnabledAfresh) {
    auto tap = makeWatchingTap();
    pressUnnoticed();
    tap->tap().enable(true);
    EXPECT_TRUE(delivered(*tap, 1));
}

TEST_F(TapLifeTest, ReportsNoPressAfterItWasDetached) {
    auto tap = makeWatchingTap();
    pressUnnoticed();
    tap->source().removeFromMainRunLoop();
    expectKeyboardAlive();
    EXPECT_TRUE(tap->presses.empty());
}

TEST_F(TapLifeTest, ReportsNoPressAfterItWasInvalidated) {
    auto tap = makeWatchingTap();
    pressUnnoticed();
    tap->tap().invalidate();
    expectKeyboardAlive();
    EXPECT_TRUE(tap->presses.empty());
    EXPECT_EQ(connectionsLost_, 0);
}

TEST_F(TapLifeTest, LeavesTheKeyboardAliveWhenDestroyedWithAPressUnderWay) {
    for (int count = 0; count < 20; ++count) {
        auto tap = makeWatchingTap();
        keyboard_.press("LCTL");
        keyboard_.press("AB02");
        tap.reset();
        keyboard_.release("AB02");
        keyboard_.release("LCTL");
    }
    EXPECT_EQ(userTime_.time(), static_cast<xcb_timestamp_t>(XCB_CURRENT_TIME));
    expectKeyboardAlive();
}

TEST_F(TapLifeTest, CanBeDestroyedFromItsOwnCallback) {
    auto tap = makeWatchingTap();
    tap->onPress = [&] { tap->destroy(); };
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap, 1));
    EXPECT_TRUE(isFree());
    expectKeyboardAlive();
}

TEST_F(TapLifeTest, TellsOnceThatTheServerIsGone) {
    auto active = makeWatchingTap();
    auto listening = makeListenOnlyTap();
    display_.server().signal(SIGKILL);
    ASSERT_TRUE(queue_.runUntil([&] { return connectionsLost_ > 0; }));
    ASSERT_TRUE(display_.server().wait());
    bool passed = false;
    queue_.asyncAfter(100ms, [&] { passed = true; });
    ASSERT_TRUE(queue_.runUntil([&] { return passed; }));
    EXPECT_EQ(connectionsLost_, 1);
    active->tap().enable(true);
    active->tap().enable(false);
    EXPECT_TRUE(active->presses.empty());
}

TEST_F(TapLifeTest, CannotBeMadeWithoutAServer) {
    x11::EventTaps nowhere(queue_, userTime_, "no display at all");
    ListeningTap tap(nowhere, platform::EventTapOptions::active);
    EXPECT_FALSE(tap.exists());
}

} // namespace

} // namespace hollowfernpike::test
