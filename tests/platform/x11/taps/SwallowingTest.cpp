#include "platform/x11/taps/KeyTapTest.h"
#include "platform/x11/windows/FocusedWindow.h"

namespace hollowfernpike::test {

namespace {

class SwallowingTest : public KeyTapTest {
protected:
    SwallowingTest() { tap_->watch({combination(keyX, flags::control)}); }

    xcb_keycode_t x_ = keyboard_.keycode("AB02");
    xcb_keycode_t c_ = keyboard_.keycode("AB03");
    xcb_keycode_t control_ = keyboard_.keycode("LCTL");
    FocusedWindow focused_{display_.name()};
    std::unique_ptr<ListeningTap> tap_ = makeActiveTap();
};

TEST_F(SwallowingTest, TheFocusedWindowSeesEverythingButThePress) {
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 1));
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(queue_.runUntil([&] { return focused_.releases(control_) == 2; }));
    EXPECT_EQ(focused_.presses(x_), 0U);
    EXPECT_EQ(focused_.releases(x_), 1U);
    EXPECT_EQ(focused_.presses(c_), 1U);
    EXPECT_EQ(focused_.releases(c_), 1U);
    EXPECT_EQ(focused_.presses(control_), 2U);
}

TEST_F(SwallowingTest, ACombinationThatIsNotBoundReachesTheFocusedWindow) {
    keyboard_.strike({"LCTL", "LFSH", "AB02"});
    keyboard_.strike({"AB02"});
    ASSERT_TRUE(queue_.runUntil([&] { return focused_.releases(x_) == 2; }));
    EXPECT_EQ(focused_.presses(x_), 2U);
    EXPECT_TRUE(tap_->presses.empty());
}

TEST_F(SwallowingTest, PressesThatAreNotBoundWakeNobody) {
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 1));
    const auto before = queue_.handedOver();
    keyboard_.strike({"LCTL", "AB03"});
    keyboard_.strike({"LFSH", "AB02"});
    keyboard_.strike({"CAPS"});
    keyboard_.strike({"AB02"});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 2));
    EXPECT_EQ(queue_.handedOver(), before + 1);
}

TEST_F(SwallowingTest, NoPressAndNoReleaseIsLostInALongRun) {
    constexpr std::size_t times = 500;
    keyboard_.press("LCTL");
    for (std::size_t count = 0; count < times; ++count) {
        keyboard_.strike({"AB02"});
        keyboard_.strike({"AB03"});
    }
    keyboard_.release("LCTL");
    ASSERT_TRUE(delivered(*tap_, times));
    ASSERT_TRUE(queue_.runUntil([&] { return focused_.releases(control_) == 1; }));
    EXPECT_EQ(tap_->presses.size(), times);
    EXPECT_EQ(focused_.presses(x_), 0U);
    EXPECT_EQ(focused_.releases(x_), times);
    EXPECT_EQ(focused_.presses(c_), times);
    EXPECT_EQ(focused_.releases(c_), times);
}

TEST_F(SwallowingTest, NoPressAndNoReleaseIsLostWhenTheyComeAllAtOnce) {
    constexpr std::size_t times = 200;
    std::vector<xcb_keycode_t> keys;
    for (std::size_t count = 0; count < times; ++count) {
        keys.insert(keys.end(), {x_, c_});
    }
    focused_.typeAtOnce(control_, keys);
    ASSERT_TRUE(delivered(*tap_, times));
    ASSERT_TRUE(queue_.runUntil([&] { return focused_.releases(control_) == 1; }));
    EXPECT_EQ(tap_->presses.size(), times);
    EXPECT_EQ(focused_.presses(x_), 0U);
    EXPECT_EQ(focused_.releases(x_), times);
    EXPECT_EQ(focused_.presses(c_), times);
    EXPECT_EQ(focused_.releases(c_), times);
}

TEST_F(SwallowingTest, TheKeyboardGoesOnWhileTheMainThreadIsBusy) {
    keyboard_.press("LCTL");
    keyboard_.strike({"AB02"});
    keyboard_.strike({"AB03"});
    keyboard_.release("LCTL");
    EXPECT_TRUE(waitUntil([&] { return focused_.releases(control_) == 1; }));
    EXPECT_EQ(focused_.presses(c_), 1U);
    EXPECT_TRUE(tap_->presses.empty());
    EXPECT_TRUE(delivered(*tap_, 1));
}

TEST_F(SwallowingTest, AnotherClientCanTakeTheKeyboardFromInsideTheCallback) {
    XClient launched(display_.name());
    bool taken = false;
    tap_->onPress = [&] { taken = launched.grabKeyboard(); };
    keyboard_.press("LCTL");
    keyboard_.press("AB02");
    ASSERT_TRUE(delivered(*tap_, 1));
    EXPECT_TRUE(taken);
}

TEST_F(SwallowingTest, ABareKeyOfInterestIsTakenFromTheFocusedWindow) {
    tap_->watch({combination(keyX, 0)});
    keyboard_.strike({"AB02"});
    keyboard_.strike({"LFSH", "AB02"});
    ASSERT_TRUE(delivered(*tap_, 1));
    ASSERT_TRUE(queue_.runUntil([&] { return focused_.releases(x_) == 2; }));
    EXPECT_EQ(focused_.presses(x_), 1U);
}

TEST_F(SwallowingTest, GivenBackCombinationsReachTheFocusedWindowAgain) {
    tap_->watch({});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(queue_.runUntil([&] { return focused_.releases(x_) == 1; }));
    EXPECT_EQ(focused_.presses(x_), 1U);
}

} // namespace

} // namespace hollowfernpike::test
