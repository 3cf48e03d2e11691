#include "platform/x11/taps/KeyTapTest.h"
#include "platform/x11/windows/FocusedWindow.h"

namespace hollowfernpike::test {

namespace {

class ListenOnlyTapTest : public KeyTapTest {};

TEST_F(ListenOnlyTapTest, SeesEveryPressAndTakesNone) {
    auto tap = makeListenOnlyTap();
    FocusedWindow focused(display_.name());
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"AB03"});
    ASSERT_TRUE(delivered(*tap, 2));
    EXPECT_EQ(tap->presses[0].keyCode, keyX);
    EXPECT_EQ(tap->presses[0].flags, flags::control | flags::nonCoalesced);
    EXPECT_EQ(tap->presses[1].keyCode, keyC);
    EXPECT_EQ(tap->presses[1].flags, flags::nonCoalesced);
    EXPECT_EQ(focused.presses(keyboard_.keycode("AB02")), 1U);
    EXPECT_EQ(focused.presses(keyboard_.keycode("AB03")), 1U);
    EXPECT_EQ(userTime_.hold(), 2U);
    EXPECT_TRUE(tap->tap().listenOnlyCombinations().empty());
}

TEST_F(ListenOnlyTapTest, IgnoresTheInterest) {
    auto tap = makeListenOnlyTap();
    tap->watch({combination(keyX, flags::control)});
    keyboard_.strike({"AB03"});
    EXPECT_TRUE(delivered(*tap, 1));
}

TEST_F(ListenOnlyTapTest, SeesNoModifierKeysAlone) {
    run({"setxkbmap", "de"});
    auto tap = makeListenOnlyTap();
    for (const auto* key : {"LFSH", "LCTL", "LALT", "LWIN", "RTSH", "RCTL", "RALT", "RWIN"}) {
        keyboard_.strike({key});
    }
    keyboard_.strike({"CAPS"});
    keyboard_.strike({"CAPS"});
    keyboard_.strike({"AB03"});
    ASSERT_TRUE(delivered(*tap, 1));
    ASSERT_EQ(tap->presses.size(), 1U);
    EXPECT_EQ(tap->presses[0].keyCode, keyC);
}

TEST_F(ListenOnlyTapTest, SeesWhatAnActiveTapSwallows) {
    auto active = makeActiveTap();
    active->watch({combination(keyX, flags::control)});
    auto tap = makeListenOnlyTap();
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap, 1));
    ASSERT_TRUE(delivered(*active, 1));
    EXPECT_EQ(tap->presses[0].flags, flags::control | flags::nonCoalesced);
}

TEST_F(ListenOnlyTapTest, SeesWhatAClientWithTheWholeKeyboardGets) {
    auto tap = makeListenOnlyTap();
    XClient other(display_.name());
    ASSERT_TRUE(other.grabKeyboard());
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap, 1));
    EXPECT_EQ(tap->presses[0].flags, flags::control | flags::nonCoalesced);
}

TEST_F(ListenOnlyTapTest, KnowsTheModifiersHeldWhenItStarts) {
    keyboard_.press("LCTL");
    keyboard_.press("LWIN");
    auto tap = makeListenOnlyTap();
    keyboard_.strike({"AB02"});
    ASSERT_TRUE(delivered(*tap, 1));
    EXPECT_EQ(tap->presses[0].flags, flags::control | flags::command | flags::nonCoalesced);
}

TEST_F(ListenOnlyTapTest, GivesEachPressOfAFastSequenceItsOwnModifiers) {
    constexpr std::size_t times = 200;
    auto tap = makeListenOnlyTap();
    for (std::size_t count = 0; count < times; ++count) {
        keyboard_.strike({"LCTL", "AB02"});
        keyboard_.strike({"AB02"});
    }
    ASSERT_TRUE(delivered(*tap, 2 * times));
    for (std::size_t count = 0; count < times; ++count) {
        EXPECT_EQ(tap->presses[2 * count].flags, flags::control | flags::nonCoalesced) << count;
        EXPECT_EQ(tap->presses[2 * count + 1].flags, flags::nonCoalesced) << count;
    }
}

TEST_F(ListenOnlyTapTest, SeesNoRepeats) {
    auto tap = makeListenOnlyTap();
    FocusedWindow focused(display_.name());
    const auto x = keyboard_.keycode("AB02");
    keyboard_.press("AB02");
    ASSERT_TRUE(queue_.runUntil([&] { return focused.presses(x) >= 4; }));
    keyboard_.release("AB02");
    keyboard_.strike({"AB03"});
    ASSERT_TRUE(delivered(*tap, 2));
    ASSERT_EQ(tap->presses.size(), 2U);
    EXPECT_EQ(tap->presses[1].keyCode, keyC);
}

TEST_F(ListenOnlyTapTest, SeesNothingWhileDisabled) {
    auto tap = makeListenOnlyTap();
    tap->tap().enable(false);
    keyboard_.strike({"AB02"});
    tap->tap().enable(true);
    keyboard_.strike({"AB03"});
    ASSERT_TRUE(delivered(*tap, 1));
    EXPECT_EQ(tap->presses.size(), 1U);
    EXPECT_EQ(tap->presses[0].keyCode, keyC);
}

} // namespace

} // namespace hollowfernpike::test
