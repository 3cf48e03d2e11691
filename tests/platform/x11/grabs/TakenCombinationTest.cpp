#include "platform/x11/taps/KeyTapTest.h"
#include "platform/x11/windows/FocusedWindow.h"

#include <thread>

namespace hollowfernpike::test {

namespace {

constexpr std::uint16_t keyV = 9;

class TakenCombinationTest : public KeyTapTest {
protected:
    TakenCombinationTest() {
        holdAtOther();
        tap_->watch({controlX_, controlC_});
    }

    void holdAtOther() { ASSERT_TRUE(other_.grab({x_, XCB_MOD_MASK_CONTROL})); }
    void letGoAtOther() { other_.ungrab({x_, XCB_MOD_MASK_CONTROL}); }
    bool othersHold(xcb_keycode_t key, unsigned modifiers) {
        return !XClient(display_.name()).isFree({key, static_cast<std::uint16_t>(modifiers)});
    }
    std::vector<platform::KeyCombination> listenOnly() {
        return tap_->tap().listenOnlyCombinations();
    }

    const platform::KeyCombination controlX_ = combination(keyX, flags::control);
    const platform::KeyCombination controlC_ = combination(keyC, flags::control);
    xcb_keycode_t x_ = keyboard_.keycode("AB02");
    xcb_keycode_t c_ = keyboard_.keycode("AB03");
    xcb_keycode_t v_ = keyboard_.keycode("AB04");
    FocusedWindow focused_{display_.name()};
    XClient other_{display_.name()};
    std::unique_ptr<ListeningTap> tap_ = makeActiveTap();
};

TEST_F(TakenCombinationTest, IsReported) {
    EXPECT_EQ(listenOnly(), std::vector{controlX_});
    tap_->tap().enable(false);
    EXPECT_TRUE(listenOnly().empty());
}

TEST_F(TakenCombinationTest, LeavesNoPartOfItHeld) {
    ASSERT_EQ(listenOnly(), std::vector{controlX_});
    EXPECT_FALSE(othersHold(x_, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK));
    EXPECT_TRUE(othersHold(c_, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK));
}

TEST_F(TakenCombinationTest, IsSeenOncePerPressBesideThoseThatAreSwallowed) {
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"LCTL", "AB03"});
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(delivered(*tap_, 4));
    ASSERT_EQ(tap_->presses.size(), 4U);
    EXPECT_EQ(tap_->presses[0].keyCode, keyX);
    EXPECT_EQ(tap_->presses[1].keyCode, keyC);
    EXPECT_EQ(tap_->presses[2].keyCode, keyX);
    EXPECT_EQ(tap_->presses[3].keyCode, keyC);
    for (const auto& press : tap_->presses) {
        EXPECT_EQ(press.flags, flags::control | flags::nonCoalesced);
    }
    EXPECT_EQ(focused_.presses(c_), 0U);
}

TEST_F(TakenCombinationTest, BringsNoOtherPressWithIt) {
    keyboard_.strike({"AB02"});
    keyboard_.strike({"LFSH", "LCTL", "AB02"});
    keyboard_.strike({"LCTL", "AB04"});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 1));
    EXPECT_EQ(tap_->presses.size(), 1U);
}

TEST_F(TakenCombinationTest, IsMatchedWithTheLocksOn) {
    keyboard_.strike({"CAPS"});
    keyboard_.strike({"NMLK"});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 1));
    EXPECT_EQ(tap_->presses[0].flags, flags::control | flags::capsLock | flags::nonCoalesced);
}

TEST_F(TakenCombinationTest, IsSwallowedAfterItsFirstPressSinceTheOtherClientLetGo) {
    letGoAtOther();
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 1));
    EXPECT_TRUE(listenOnly().empty());
    EXPECT_EQ(focused_.presses(x_), 1U);
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 2));
    ASSERT_TRUE(queue_.runUntil([&] { return focused_.releases(x_) == 2; }));
    EXPECT_EQ(focused_.presses(x_), 1U);
    EXPECT_EQ(tap_->presses.size(), 2U);
}

TEST_F(TakenCombinationTest, IsNotTriedAgainWithEveryOtherPress) {
    letGoAtOther();
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(delivered(*tap_, 1));
    EXPECT_EQ(listenOnly(), std::vector{controlX_});
}

TEST_F(TakenCombinationTest, LosesAndDoublesNoPressAroundItsRecovery) {
    constexpr std::size_t times = 50;
    letGoAtOther();
    for (std::size_t count = 0; count < times; ++count) {
        keyboard_.strike({"LCTL", "AB02"});
    }
    ASSERT_TRUE(delivered(*tap_, 1));
    for (std::size_t count = 0; count < times; ++count) {
        keyboard_.strike({"LCTL", "AB02"});
    }
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(queue_.runUntil(
        [&] { return !tap_->presses.empty() && tap_->presses.back().keyCode == keyC; }));
    EXPECT_EQ(tap_->presses.size(), 2 * times + 1);
}

TEST_F(TakenCombinationTest, DoublesNoPressOfOtherCombinationsThatFollowAtOnce) {
    constexpr std::size_t times = 100;
    tap_->watch({controlX_, controlC_, combination(keyV, flags::control), combination(keyV, 0)});
    std::vector<xcb_keycode_t> keys;
    for (std::size_t count = 0; count < times; ++count) {
        keys.insert(keys.end(), {c_, v_});
    }
    other_.typeAtOnce(keyboard_.keycode("LCTL"), keys);
    keyboard_.strike({"AB04"});
    ASSERT_TRUE(queue_.runUntil([&] {
        return !tap_->presses.empty() && tap_->presses.back().flags == flags::nonCoalesced;
    }));
    EXPECT_EQ(tap_->presses.size(), 2 * times + 1);
}

TEST_F(TakenCombinationTest, DoublesNoPressWhileItIsTriedAgain) {
    constexpr std::size_t times = 500;
    letGoAtOther();
    ASSERT_TRUE(other_.grab({x_, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK}));
    std::thread typing([&] {
        keyboard_.press("LCTL");
        for (std::size_t count = 0; count < times; ++count) {
            keyboard_.strike({"AB02"});
        }
        keyboard_.strike({"AB03"});
    });
    EXPECT_TRUE(queue_.runUntil([&] {
        tap_->watch({controlX_, controlC_});
        return !tap_->presses.empty() && tap_->presses.back().keyCode == keyC;
    }));
    typing.join();
    EXPECT_EQ(tap_->presses.size(), times + 1);
    EXPECT_EQ(listenOnly(), std::vector{controlX_});
}

TEST_F(TakenCombinationTest, IsSwallowedAfterAChangeOfInterest) {
    letGoAtOther();
    tap_->watch({controlX_});
    EXPECT_TRUE(listenOnly().empty());
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 1));
    EXPECT_EQ(focused_.presses(x_), 0U);
}

TEST_F(TakenCombinationTest, IsSwallowedAfterAChangeOfTheKeyboard) {
    letGoAtOther();
    XClient(display_.name()).changeKeySymbols(1);
    ASSERT_TRUE(queue_.runUntil([&] { return tap_->disabledReports == 1; }));
    EXPECT_TRUE(listenOnly().empty());
}

TEST_F(TakenCombinationTest, IsForgottenWithTheInterest) {
    tap_->watch({controlC_});
    EXPECT_TRUE(listenOnly().empty());
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(delivered(*tap_, 1));
    EXPECT_EQ(tap_->presses.front().keyCode, keyC);
    EXPECT_EQ(tap_->presses.size(), 1U);
}

} // namespace

} // namespace hollowfernpike::test
