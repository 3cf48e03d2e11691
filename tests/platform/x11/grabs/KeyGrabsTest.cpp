#include "platform/x11/grabs/KeyGrabs.h"

#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"
#include "support/XClient.h"

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

namespace flags = platform::event_flags;
using Combinations = std::vector<platform::KeyCombination>;

class KeyGrabsTest : public testing::Test {
protected:
    /// Every press is grabbed once for each state of Caps Lock and Num Lock.
    static constexpr unsigned lockStates = 4;

    /// How many requests the change took.
    unsigned requestsFor(const Combinations& combinations) {
        const auto before = xcb_no_operation(client_.server()).sequence;
        grabs_.update(map_, combinations);
        return xcb_no_operation(client_.server()).sequence - before - 1;
    }

    VirtualDisplay display_;
    XClient client_{display_.name()};
    x11::KeyboardMap map_{x11::KeyboardDescription::read(client_.connection()).value()};
    x11::KeyGrabs grabs_{client_.connection()};
    const platform::KeyCombination controlX_{.keyCode = 7, .modifierFlags = flags::control};
    const platform::KeyCombination controlC_{.keyCode = 8, .modifierFlags = flags::control};
    const platform::KeyCombination superX_{.keyCode = 7, .modifierFlags = flags::command};
    const platform::KeyCombination controlV_{.keyCode = 9, .modifierFlags = flags::control};
};

TEST_F(KeyGrabsTest, AsksForTheDifferenceAlone) {
    // The additional request is there to learn that the server has done the others.
    EXPECT_EQ(requestsFor({controlX_, controlC_}), 2 * lockStates + 1);
    EXPECT_EQ(requestsFor({controlC_, controlX_}), 0U);
    EXPECT_EQ(requestsFor({controlX_, controlC_, controlV_}), lockStates + 1);
    EXPECT_EQ(requestsFor({controlX_}), 2 * lockStates + 1);
    EXPECT_EQ(requestsFor({controlX_}), 0U);
}

TEST_F(KeyGrabsTest, KnowsSinceWhenAPressIsHeld) {
    KeyInjector keyboard(display_.name());
    const x11::KeyState press{keyboard.keycode("AB02"), XCB_MOD_MASK_CONTROL};
    const auto before = xcb_no_operation(client_.server()).sequence;
    EXPECT_TRUE(grabs_.update(map_, Combinations{controlX_}).empty());
    const auto after = xcb_no_operation(client_.server()).sequence;
    EXPECT_FALSE(grabs_.held(press, before));
    EXPECT_TRUE(grabs_.held(press, after));
    grabs_.release();
    EXPECT_FALSE(grabs_.held(press, after));
}

TEST_F(KeyGrabsTest, APartHeldElsewhereMakesTheWholeCombinationTaken) {
    XClient other(display_.name());
    KeyInjector keyboard(display_.name());
    const auto x = keyboard.keycode("AB02");
    ASSERT_TRUE(other.grab({x, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK}));
    EXPECT_EQ(grabs_.update(map_, Combinations{controlX_, controlC_}), Combinations{controlX_});
    client_.sync();
    EXPECT_TRUE(other.grab({x, XCB_MOD_MASK_CONTROL}));
    EXPECT_FALSE(other.grab({keyboard.keycode("AB03"), XCB_MOD_MASK_CONTROL}));
}

TEST_F(KeyGrabsTest, GrabsTheFocusedWindowAnewBecauseItsNumberMayBeReused) {
    XClient other(display_.name());
    const auto window = xcb_generate_id(other.server());
    const auto open = [&] {
        xcb_create_window(other.server(), XCB_COPY_FROM_PARENT, window, other.connection().root(),
                          0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0,
                          nullptr);
        other.sync();
    };
    const auto isGrabbed = [&] {
        client_.sync();
        const auto x = KeyInjector(display_.name()).keycode("AB02");
        return !other.isFree({x, XCB_MOD_MASK_4, window});
    };
    EXPECT_TRUE(grabs_.update(map_, Combinations{superX_}).empty());
    open();
    grabs_.setWindows({.windows = {window}});
    EXPECT_TRUE(isGrabbed());
    xcb_destroy_window(other.server(), window);
    open();
    EXPECT_FALSE(isGrabbed());
    grabs_.setWindows({.windows = {window}, .focused = window});
    EXPECT_TRUE(isGrabbed());
}

TEST_F(KeyGrabsTest, TriesNothingButThePartThatWasTakenBefore) {
    KeyInjector keyboard(display_.name());
    const auto x = keyboard.keycode("AB02");
    XClient other(display_.name());
    ASSERT_TRUE(other.grab({x, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK}));
    EXPECT_EQ(grabs_.update(map_, Combinations{controlX_}), Combinations{controlX_});
    EXPECT_EQ(requestsFor({controlX_}), 2U) << "the part, and one to learn what became of it";
    other.ungrab({x, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK});
    other.sync();
    EXPECT_TRUE(grabs_.update(map_, Combinations{controlX_}).empty());
    for (const unsigned locks : {0U, unsigned{XCB_MOD_MASK_LOCK}}) {
        EXPECT_TRUE(
            grabs_.held({x, static_cast<freedesktop::ModifierState>(XCB_MOD_MASK_CONTROL | locks)},
                        xcb_no_operation(client_.server()).sequence));
    }
}

} // namespace

} // namespace hollowfernpike::test
