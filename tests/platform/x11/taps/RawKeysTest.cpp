#include "platform/x11/taps/RawKeys.h"

#include "platform/x11/TrustProblem.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"
#include "support/XClient.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

class RawKeysTest : public testing::Test {
protected:
    RawKeysTest() { EXPECT_FALSE(x11::findTrustProblem(&client_.connection())); }

    using States = std::vector<x11::KeyState>;

    /// The states of the presses that have arrived.
    States states() {
        keyboard_.sync();
        client_.sync();
        States result;
        while (const x11::Reply<xcb_generic_event_t> event{xcb_poll_for_event(client_.server())}) {
            if (const auto press = raw_.read(*event)) {
                result.push_back(press->state);
            }
        }
        return result;
    }

    VirtualDisplay display_;
    XClient client_{display_.name()};
    XClient other_{display_.name()};
    KeyInjector keyboard_{display_.name()};
    xcb_keycode_t x_ = keyboard_.keycode("AB02");
    xcb_keycode_t control_ = keyboard_.keycode("LCTL");
    bool isScreenLocked_ = false;
    x11::RawKeys raw_{client_.connection(), [this] { return isScreenLocked_; }};
};

TEST_F(RawKeysTest, PressesFromBeforeTheStopAreReadAfterIt) {
    raw_.start();
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.sync();
    raw_.stop();
    client_.sync();
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), (States{{control_, 0}, {x_, XCB_MOD_MASK_CONTROL}}));
}

// The start reads the modifiers anew, so they would be wrong for older presses.
TEST_F(RawKeysTest, PressesFromBeforeANewStartArePassedOver) {
    raw_.start();
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.sync();
    raw_.stop();
    raw_.start();
    keyboard_.strike({"AB02"});
    keyboard_.sync();
    EXPECT_EQ(states(), (States{{x_, 0}}));
}

TEST_F(RawKeysTest, NothingIsSeenWhileAnotherHasKeyboardAndPointer) {
    raw_.start();
    ASSERT_TRUE(other_.takeInput());
    keyboard_.strike({"AB02"});
    keyboard_.strike({"LCTL", "AB02"});
    EXPECT_EQ(states(), States{});
    other_.giveInputBack();
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), (States{{x_, 0}}));
}

TEST_F(RawKeysTest, NothingIsSeenIfAnotherHadThemBefore) {
    keyboard_.press("LCTL");
    ASSERT_TRUE(other_.takeInput());
    raw_.start();
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), States{});
}

TEST_F(RawKeysTest, AClientWithTheKeyboardAloneHidesNothing) {
    raw_.start();
    ASSERT_TRUE(other_.grabKeyboard());
    keyboard_.strike({"LCTL", "AB02"});
    EXPECT_EQ(states(), (States{{control_, 0}, {x_, XCB_MOD_MASK_CONTROL}}));
}

// As Cinnamon's locker does with the first key press, for its dialog.
TEST_F(RawKeysTest, NothingIsSeenWhenALockerGivesThePointerBack) {
    raw_.start();
    ASSERT_TRUE(other_.takeInput());
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), States{});
    other_.givePointerBack();
    keyboard_.strike({"LCTL", "AB02"});
    EXPECT_EQ(states(), States{});
    other_.giveInputBack();
    keyboard_.strike({"LCTL", "AB02"});
    EXPECT_EQ(states(), (States{{control_, 0}, {x_, XCB_MOD_MASK_CONTROL}}));
}

// As Cinnamon's locker looks once the mouse has woken it.
TEST_F(RawKeysTest, NothingIsSeenBehindALockerWithTheKeyboardAlone) {
    raw_.start();
    isScreenLocked_ = true;
    ASSERT_TRUE(other_.grabKeyboard());
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), States{});
    isScreenLocked_ = false;
    other_.giveInputBack();
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), (States{{x_, 0}}));
}

// A locker that has ended without a word has lost the keyboard with its connection.
TEST_F(RawKeysTest, ALockedScreenHidesNothingWhoseKeyboardNobodyHas) {
    raw_.start();
    isScreenLocked_ = true;
    keyboard_.strike({"LCTL", "AB02"});
    EXPECT_EQ(states(), (States{{control_, 0}, {x_, XCB_MOD_MASK_CONTROL}}));
}

// As every program does while a mouse button is held on one of its windows.
TEST_F(RawKeysTest, AClientWithThePointerAloneHidesNothing) {
    raw_.start();
    ASSERT_TRUE(other_.grabPointer());
    keyboard_.strike({"LCTL", "AB02"});
    EXPECT_EQ(states(), (States{{control_, 0}, {x_, XCB_MOD_MASK_CONTROL}}));
}

TEST_F(RawKeysTest, ALockIsNoModifierThatIsHeld) {
    other_.lockModifiers(XCB_MOD_MASK_LOCK, true);
    raw_.start();
    other_.lockModifiers(XCB_MOD_MASK_2, true);
    ASSERT_TRUE(other_.takeInput());
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), States{});
}

// A window manager that switches windows takes both as soon as it is told of Alt+Tab.
TEST_F(RawKeysTest, APressThatMakesAnotherTakeKeyboardAndPointerIsSeen) {
    raw_.start();
    keyboard_.press("LCTL");
    EXPECT_EQ(states(), (States{{control_, 0}}));
    keyboard_.press("AB02");
    ASSERT_TRUE(other_.takeInput());
    EXPECT_EQ(states(), (States{{x_, XCB_MOD_MASK_CONTROL}}));
    keyboard_.strike({"AB02"});
    EXPECT_EQ(states(), States{});
}

TEST_F(RawKeysTest, AModifierHeldBeforeTheStartCountsForSuchAPressToo) {
    keyboard_.press("LCTL");
    keyboard_.sync();
    raw_.start();
    keyboard_.press("AB02");
    ASSERT_TRUE(other_.takeInput());
    EXPECT_EQ(states(), (States{{x_, XCB_MOD_MASK_CONTROL}}));
}

} // namespace

} // namespace hollowfernpike::test
