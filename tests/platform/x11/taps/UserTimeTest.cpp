#include "platform/x11/taps/UserTime.h"

#include "platform/x11/taps/KeyTapTest.h"
#include "support/XClient.h"

#include <array>

namespace hollowfernpike::test {

namespace {

constexpr platform::KeyCombination held{.keyCode = keyX, .modifierFlags = flags::control};

TEST(UserTimeTest, NothingIsHeldBeforeTheFirstPress) {
    x11::UserTime userTime;
    EXPECT_EQ(userTime.hold(), 0U);
    userTime.record(1, {});
    EXPECT_EQ(userTime.hold(), 1U);
}

TEST(UserTimeTest, APressWithinASecondRepeatsTheOneBefore) {
    x11::UserTime userTime;
    userTime.record(5000, held);
    userTime.record(6000, held);
    userTime.record(7000, held);
    EXPECT_EQ(userTime.hold(), 1U);
    userTime.record(8001, held);
    EXPECT_EQ(userTime.hold(), 2U);
}

/// With a keyboard that repeats at the latest after `longest` milliseconds, presses up to `gap`
/// apart are one hold.
void expectALongestGap(xcb_timestamp_t longest, xcb_timestamp_t gap) {
    x11::UserTime userTime;
    userTime.setRepetition(longest);
    userTime.record(5000, held);
    userTime.record(5000 + gap, held);
    EXPECT_EQ(userTime.hold(), 1U);
    userTime.record(5000 + 2 * gap + 1, held);
    EXPECT_EQ(userTime.hold(), 2U);
}

TEST(UserTimeTest, AKeyboardThatRepeatsSlowlyIsGivenTwiceItsTime) {
    expectALongestGap(660, 1320);
}

TEST(UserTimeTest, AKeyboardThatRepeatsFastIsGivenASecond) {
    expectALongestGap(25, 1000);
}

TEST(UserTimeTest, AnotherCombinationIsAnotherHoldAndSoIsTheFirstOneAgain) {
    x11::UserTime userTime;
    for (const platform::KeyCombination& combination :
         {held, {keyC, held.modifierFlags}, {keyC, flags::option}, held}) {
        const auto before = userTime.hold();
        userTime.record(5000, combination);
        EXPECT_EQ(userTime.hold(), before + 1);
    }
}

TEST(UserTimeTest, TheClockOfTheServerBeginsAnewAfterSevenWeeks) {
    x11::UserTime userTime;
    userTime.record(0xFFFF'FF00, held);
    userTime.record(0x0000'0100, held);
    EXPECT_EQ(userTime.hold(), 1U);
    userTime.record(0x0000'0100 + 1001, held);
    EXPECT_EQ(userTime.hold(), 2U);
}

class HoldTest : public KeyTapTest {
protected:
    void slowDown() { run({"xset", "r", "rate", "1500", "20"}); }

    /// The first repeat comes soon, each further one after 1.5 seconds; `xset` cannot set that.
    void repeatRarely() {
        XClient client(display_.name());
        constexpr std::uint16_t delay = 100; // milliseconds
        constexpr std::uint16_t interval = 1500;
        constexpr std::array<std::uint8_t, 32> keys{};
        xcb_xkb_set_controls(client.server(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                             0, 0, 0, XCB_XKB_BOOL_CTRL_REPEAT_KEYS, delay, interval, 0, 0, 0, 0, 0,
                             0, 0, 0, 0, 0, 0, 0, keys.data());
        client.sync();
    }

    /// Holds the key down until it has repeated twice.
    void holdUntilItRepeats(ListeningTap& tap) {
        const auto before = tap.presses.size();
        keyboard_.press("LCTL");
        keyboard_.press("AB02");
        ASSERT_TRUE(delivered(tap, before + 3));
        keyboard_.release("AB02");
        keyboard_.release("LCTL");
    }

    std::unique_ptr<ListeningTap> makeWatchingTap() {
        auto tap = makeActiveTap();
        tap->watch({combination(keyX, flags::control), combination(keyC, flags::control)});
        return tap;
    }
};

TEST_F(HoldTest, EveryRepeatOfAHeldKeyIsDeliveredAndAllAreOneHold) {
    auto tap = makeWatchingTap();
    holdUntilItRepeats(*tap);
    EXPECT_GE(tap->presses.size(), 3U);
    EXPECT_EQ(userTime_.hold(), 1U);
}

TEST_F(HoldTest, AKeyboardThatRepeatsSlowlyIsWaitedFor) {
    slowDown();
    auto tap = makeWatchingTap();
    holdUntilItRepeats(*tap);
    EXPECT_EQ(userTime_.hold(), 1U);
}

TEST_F(HoldTest, AKeyboardThatRepeatsRarelyIsWaitedFor) {
    repeatRarely();
    auto tap = makeWatchingTap();
    holdUntilItRepeats(*tap);
    EXPECT_EQ(userTime_.hold(), 1U);
}

TEST_F(HoldTest, AKeyboardThatComesToRepeatSlowlyIsWaitedFor) {
    auto tap = makeWatchingTap();
    slowDown();
    ASSERT_TRUE(queue_.runUntil([&] { return tap->disabledReports > 0; }));
    holdUntilItRepeats(*tap);
    EXPECT_EQ(userTime_.hold(), 1U);
}

TEST_F(HoldTest, TheLocksDoNotMakeAnotherCombination) {
    auto tap = makeWatchingTap();
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"CAPS"});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap, 2));
    EXPECT_EQ(userTime_.hold(), 1U);
    keyboard_.strike({"CAPS"});
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(delivered(*tap, 3));
    EXPECT_EQ(userTime_.hold(), 2U);
}

} // namespace

} // namespace hollowfernpike::test
