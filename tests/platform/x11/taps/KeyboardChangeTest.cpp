#include "platform/x11/taps/KeyTapTest.h"
#include "support/XClient.h"

#include <array>
#include <functional>

namespace hollowfernpike::test {

namespace {

constexpr std::uint16_t keyA = 0;
constexpr std::uint16_t homeKey = 115;
constexpr std::uint16_t calculatorKey = 256 + 140;

class KeyboardChangeTest : public KeyTapTest {
protected:
    /// Waits until the tap has reported the changes made so far and was enabled again.
    bool reported(const ListeningTap& tap, int reports = 1) {
        return queue_.runUntil([&] { return tap.disabledReports >= reports; });
    }

    /// A tap that has seen a press: the first press of a device is a change of the keyboard too.
    std::unique_ptr<ListeningTap> makeUsedTap() {
        auto tap = makeActiveTap();
        tap->watch({combination(keyA, flags::control)});
        expectDelivered(*tap, {"LCTL", "AC01"}, keyA);
        letSettle(*tap);
        tap->disabledReports = 0;
        return tap;
    }

    /// Runs until everything that the changes made so far lead to has happened: the press arrives
    /// after them on the tap's connection, and work that they have delayed is due before the work
    /// that is given here.
    void letSettle(ListeningTap& tap) {
        expectDelivered(tap, {"LCTL", "AC01"}, keyA);
        runWorkForLater();
    }
    void runWorkForLater() {
        bool reached = false;
        queue_.asyncAfter(100ms, [&] { reached = true; });
        ASSERT_TRUE(queue_.runUntil([&] { return reached; }));
    }

    /// Stops the clock until the tap has seen all events of a change: on a busy machine they may
    /// take longer than the tap would wait for them.
    void expectOneReport(ListeningTap& tap, const std::function<void()>& change) {
        queue_.stopClock();
        tap.disabledReports = 0;
        change();
        expectDelivered(tap, {"LCTL", "AC01"}, keyA);
        EXPECT_EQ(tap.disabledReports, 0);
        queue_.advance(100ms);
        ASSERT_TRUE(reported(tap));
        expectDelivered(tap, {"LCTL", "AC01"}, keyA);
        queue_.advance(100ms);
        expectDelivered(tap, {"LCTL", "AC01"}, keyA);
        EXPECT_EQ(tap.disabledReports, 1);
    }

    /// Waits until the tap holds this key with these modifiers.
    bool comesToHold(xcb_keycode_t key, std::uint16_t modifiers) {
        XClient client(display_.name());
        return queue_.runUntil([&] { return !client.isFree({key, modifiers}); });
    }

    void expectDelivered(ListeningTap& tap, const std::vector<std::string>& keys,
                         std::int64_t keyCode) {
        tap.presses.clear();
        keyboard_.strike(keys);
        ASSERT_TRUE(delivered(tap, 1)) << keys.back();
        EXPECT_EQ(tap.presses.front().keyCode, keyCode) << keys.back();
    }
};

TEST_F(KeyboardChangeTest, KeepsEveryPositionInTheOtherLayoutsOfTheKeyboard) {
    run({"setxkbmap", "us,ru,fr"});
    auto tap = makeUsedTap();
    tap->watch({combination(keyA, flags::control), combination(keyX, flags::command)});
    XClient client(display_.name());
    for (const auto group : std::array<std::uint8_t, 3>{1, 2, 0}) {
        client.lockLayoutGroup(group);
        expectDelivered(*tap, {"LCTL", "AC01"}, keyA);
        expectDelivered(*tap, {"LWIN", "AB02"}, keyX);
    }
    letSettle(*tap);
    EXPECT_EQ(tap->disabledReports, 0);
}

TEST_F(KeyboardChangeTest, KeepsEveryPositionWhenTheLayoutIsReplaced) {
    auto tap = makeUsedTap();
    int changes = 0;
    for (const auto* layout : {"fr", "ru", "us(dvorak)"}) {
        run({"setxkbmap", layout});
        ASSERT_TRUE(reported(*tap, ++changes)) << layout;
        expectDelivered(*tap, {"LCTL", "AC01"}, keyA);
    }
}

TEST_F(KeyboardChangeTest, ReportsItselfDisabledOncePerChange) {
    auto tap = makeUsedTap();
    expectOneReport(*tap, [&] { run({"setxkbmap", "fr"}); });
}

TEST_F(KeyboardChangeTest, ReportsItselfDisabledOnceForABurst) {
    auto tap = makeUsedTap();
    XClient client(display_.name());
    for (int burst = 0; burst < 2; ++burst) {
        expectOneReport(*tap, [&] { client.changeKeySymbols(20); });
    }
}

TEST_F(KeyboardChangeTest, ATapDisabledWithinABurstReportsNothing) {
    auto tap = makeUsedTap();
    int reportsBefore = 0;
    tap->onPress = [&] {
        tap->tap().enable(false);
        reportsBefore = tap->disabledReports;
    };
    XClient(display_.name()).changeKeySymbols(1);
    expectDelivered(*tap, {"LCTL", "AC01"}, keyA);
    runWorkForLater();
    EXPECT_EQ(tap->disabledReports, reportsBefore);
}

TEST_F(KeyboardChangeTest, FollowsAModifierThatMoves) {
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::command)});
    expectDelivered(*tap, {"LWIN", "AB02"}, keyX);
    run({"xmodmap", "-e", "remove mod4 = Super_L Super_R", "-e", "add mod3 = Super_L Super_R"});
    ASSERT_TRUE(comesToHold(keyboard_.keycode("AB02"), XCB_MOD_MASK_3));
    expectDelivered(*tap, {"LWIN", "AB02"}, keyX);
    EXPECT_EQ(tap->presses.front().flags, flags::command | flags::nonCoalesced);
}

TEST_F(KeyboardChangeTest, FollowsAKeyWhoseNumberMoves) {
    auto tap = makeActiveTap();
    tap->watch({combination(homeKey, flags::control)});
    const auto before = keyboard_.keycode("HOME");
    run({"setxkbmap", "-keycodes", "xfree86+aliases(qwerty)"});
    ASSERT_NE(keyboard_.keycode("HOME"), before);
    ASSERT_TRUE(comesToHold(keyboard_.keycode("HOME"), XCB_MOD_MASK_CONTROL));
    expectDelivered(*tap, {"LCTL", "HOME"}, homeKey);
    EXPECT_TRUE(XClient(display_.name()).isFree({before, XCB_MOD_MASK_CONTROL}));
}

TEST_F(KeyboardChangeTest, KeepsWhatItHoldsUntilItIsEnabledAgain) {
    auto tap = makeActiveTap();
    tap->reenables = false;
    tap->watch({combination(homeKey, flags::control)});
    const auto before = keyboard_.keycode("HOME");
    run({"setxkbmap", "-keycodes", "xfree86+aliases(qwerty)"});
    ASSERT_TRUE(reported(*tap));
    XClient client(display_.name());
    EXPECT_FALSE(client.isFree({before, XCB_MOD_MASK_CONTROL}));
    tap->tap().enable(true);
    EXPECT_TRUE(client.isFree({before, XCB_MOD_MASK_CONTROL}));
    expectDelivered(*tap, {"LCTL", "HOME"}, homeKey);
}

TEST_F(KeyboardChangeTest, LeavesOutAModifierThatTheMapLacksUntilItComes) {
    run({"setxkbmap", "-symbols", "us"});
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::command), combination(keyA, 0)});
    EXPECT_TRUE(tap->tap().listenOnlyCombinations().empty());
    keyboard_.strike({"LWIN", "AB02"});
    expectDelivered(*tap, {"AC01"}, keyA);
    ASSERT_EQ(tap->presses.size(), 1U);

    run({"setxkbmap", "us"});
    ASSERT_TRUE(comesToHold(keyboard_.keycode("AB02"), XCB_MOD_MASK_4));
    expectDelivered(*tap, {"LWIN", "AB02"}, keyX);
}

TEST_F(KeyboardChangeTest, LeavesOutAKeyThatTheMapLacksUntilItComes) {
    run({"setxkbmap", "-keycodes", "xfree86+aliases(qwerty)"});
    ASSERT_EQ(keyboard_.keycode("I148"), 0);
    auto tap = makeActiveTap();
    tap->watch({combination(calculatorKey, flags::control), combination(keyA, flags::control),
                combination(60000, flags::control)});
    EXPECT_TRUE(tap->tap().listenOnlyCombinations().empty());
    keyboard_.strike({"LCTL", "AB02"});
    expectDelivered(*tap, {"LCTL", "AC01"}, keyA);
    ASSERT_EQ(tap->presses.size(), 1U);

    run({"setxkbmap", "-keycodes", "evdev+aliases(qwerty)"});
    ASSERT_TRUE(comesToHold(keyboard_.keycode("I148"), XCB_MOD_MASK_CONTROL));
    expectDelivered(*tap, {"LCTL", "I148"}, calculatorKey);
}

TEST_F(KeyboardChangeTest, AListenOnlyTapFollowsToo) {
    auto tap = makeListenOnlyTap();
    run({"xmodmap", "-e", "remove mod4 = Super_L Super_R", "-e", "add mod3 = Super_L Super_R"});
    ASSERT_TRUE(reported(*tap));
    EXPECT_TRUE(queue_.runUntil([&] {
        expectDelivered(*tap, {"LWIN", "AB02"}, keyX);
        return tap->presses.front().flags == (flags::command | flags::nonCoalesced);
    }));
}

} // namespace

} // namespace hollowfernpike::test
