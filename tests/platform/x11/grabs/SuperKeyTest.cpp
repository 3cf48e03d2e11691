#include "platform/x11/DesktopObserver.h"
#include "platform/x11/grabs/SuperKeyHolder.h"
#include "platform/x11/taps/KeyTapTest.h"
#include "platform/x11/windows/FocusedWindow.h"

#include <algorithm>
#include <array>
#include <memory>

namespace hollowfernpike::test {

namespace {

using Manner = SuperKeyHolder::Manner;

/// Presses with the Super key while somebody else holds that key alone.
class SuperKeyTest : public testing::Test {
protected:
    /// Strikes a key: the first press from another keyboard than before is a change of the
    /// keyboard, after which a tap asks anew who holds the Super key.
    SuperKeyTest() {
        // A key that is frozen for longer than the repeat delay would come twice.
        EXPECT_EQ(desktop_.start({"xset", "r", "off"})->wait(), 0);
        keyboard_.strike({"AB03"});
        keyboard_.sync();
    }

    static platform::KeyCombination superX(std::uint64_t modifiers = 0) {
        return {.keyCode = keyX, .modifierFlags = flags::command | modifiers};
    }

    /// Every set of modifiers with Super in it, and Control+C, which ends a test's waiting.
    static std::vector<platform::KeyCombination> everySetWithSuper() {
        std::vector combinations{platform::KeyCombination{keyC, flags::control}};
        for (std::uint64_t set = 0; set < 8; ++set) {
            combinations.push_back(superX(set * flags::shift));
        }
        return combinations;
    }

    /// The keys of every such set in every order and with both Super keys, each followed by X.
    static std::vector<std::vector<std::string>> everyOrder() {
        std::vector<std::vector<std::string>> orders;
        for (unsigned set = 0; set < 8; ++set) {
            for (const char* superKey : {"LWIN", "RWIN"}) {
                std::vector<std::string> keys{superKey};
                for (unsigned key = 0; key < 3; ++key) {
                    if ((set >> key & 1U) != 0) {
                        keys.emplace_back(std::array{"LCTL", "LALT", "LFSH"}.at(key));
                    }
                }
                std::ranges::sort(keys);
                do {
                    orders.push_back(keys);
                    orders.back().emplace_back("AB02");
                } while (std::ranges::next_permutation(keys).found);
            }
        }
        return orders;
    }

    std::unique_ptr<SuperKeyHolder> hold(Manner manner,
                                         const std::vector<std::string>& names = {"LWIN", "RWIN"}) {
        std::vector<xcb_keycode_t> keys;
        for (const auto& name : names) {
            keys.push_back(keyboard_.keycode(name));
        }
        return std::make_unique<SuperKeyHolder>(desktop_.display(), manner, keys);
    }

    std::unique_ptr<ListeningTap>
    listenTo(const std::vector<platform::KeyCombination>& combinations) {
        auto tap = std::make_unique<ListeningTap>(taps_, platform::EventTapOptions::active);
        tap->watch(combinations);
        tap->tap().enable(true);
        return tap;
    }

    /// How often the tap was told of X. Strikes Control+C and waits until the tap is told of that.
    std::size_t pressesOfX(ListeningTap& tap) {
        keyboard_.strike({"LCTL", "AB03"});
        EXPECT_TRUE(queue_.runUntil(
            [&] { return !tap.presses.empty() && tap.presses.back().keyCode == keyC; }));
        const auto count = std::ranges::count(tap.presses, keyX, &platform::KeyEvent::keyCode);
        tap.presses.clear();
        return static_cast<std::size_t>(count);
    }

    void expectEveryOrderOnce(ListeningTap& tap) {
        for (const auto& keys : everyOrder()) {
            keyboard_.strike(keys);
            EXPECT_EQ(pressesOfX(tap), 1U) << testing::PrintToString(keys);
        }
    }

    /// The window manager has told everybody of the window when this returns.
    std::unique_ptr<FocusedWindow> open() {
        auto window = std::make_unique<FocusedWindow>(desktop_.display());
        EXPECT_TRUE(waitUntil(
            [&] { return window->hasFocus() && observer_.activeWindow() == window->window(); }));
        return window;
    }

    /// The tap learns of a new window when the window manager tells of it. It misses a press before
    /// that, so the press is repeated until it is grabbed.
    testing::AssertionResult isGrabbedOn(FocusedWindow& window, ListeningTap& tap) {
        const bool isGrabbed = queue_.runUntil([&] {
            const auto before = window.presses(x_);
            keyboard_.strike({"LWIN", "AB02"});
            return pressesOfX(tap) == 1 && window.presses(x_) == before;
        });
        return isGrabbed ? testing::AssertionSuccess()
                         : testing::AssertionFailure() << "Super+X reaches the window";
    }

    /// Lets so much time pass that the tap asks who holds the key only if it is given a reason.
    void letTheDesktopHaveStarted(ListeningTap& tap) {
        queue_.advance(20s);
        EXPECT_EQ(pressesOfX(tap), 0U);
    }

    testing::AssertionResult reachesTheWindow(FocusedWindow& window, ListeningTap& tap) {
        const auto before = window.presses(x_);
        keyboard_.strike({"LWIN", "AB02"});
        const auto seen = pressesOfX(tap);
        const bool reaches = seen == 0 && window.presses(x_) == before + 1;
        return reaches ? testing::AssertionSuccess()
                       : testing::AssertionFailure() << "the tap saw " << seen;
    }

    PrivateDesktop desktop_{"openbox"};
    PumpedMainQueue queue_;
    DesktopObserver observer_{desktop_.display()};
    x11::UserTime userTime_;
    x11::EventTaps taps_{queue_, userTime_, desktop_.display()};
    KeyInjector keyboard_{desktop_.display()};
    xcb_keycode_t x_ = keyboard_.keycode("AB02");
};

TEST_F(SuperKeyTest, WhatIsTypedAfterALoneSuperKeyBypassesGrabsOnTheRoot) {
    const auto holder = hold(Manner::mutter);
    XClient other(desktop_.display());
    ASSERT_TRUE(other.grab({x_, XCB_MOD_MASK_4}));
    const auto window = open();
    keyboard_.strike({"LWIN", "AB02"});
    EXPECT_TRUE(waitUntil([&] { return window->presses(x_) == 1; }));
}

TEST_F(SuperKeyTest, EveryOrderIsSwallowedOnceOnAWindowThatWasThere) {
    const auto holder = hold(Manner::mutter);
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    expectEveryOrderOnce(*tap);
    EXPECT_EQ(window->presses(x_), 0U);
    EXPECT_TRUE(tap->tap().listenOnlyCombinations().empty());
}

TEST_F(SuperKeyTest, EveryOrderIsSwallowedOnceOnAWindowThatComesLater) {
    const auto holder = hold(Manner::mutter);
    const auto tap = listenTo(everySetWithSuper());
    const auto first = open();
    ASSERT_TRUE(isGrabbedOn(*first, *tap));
    const auto second = open();
    ASSERT_TRUE(isGrabbedOn(*second, *tap));
    const auto before = second->presses(x_);
    expectEveryOrderOnce(*tap);
    EXPECT_EQ(second->presses(x_), before);
}

TEST_F(SuperKeyTest, EveryOrderIsSeenOnceWhereNoWindowIsOpen) {
    const auto holder = hold(Manner::mutter);
    const auto tap = listenTo(everySetWithSuper());
    expectEveryOrderOnce(*tap);
    auto window = open();
    ASSERT_TRUE(isGrabbedOn(*window, *tap));
    window.reset();
    ASSERT_TRUE(queue_.runUntil([&] {
        keyboard_.strike({"LWIN", "AB02"});
        return pressesOfX(*tap) == 1;
    }));
    expectEveryOrderOnce(*tap);
}

TEST_F(SuperKeyTest, TheHolderKeepsTheLoneKey) {
    const auto holder = hold(Manner::mutter);
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    keyboard_.strike({"LWIN"});
    ASSERT_TRUE(waitUntil([&] { return holder->menus() == 1; }));
    keyboard_.strike({"LWIN", "AB02"});
    EXPECT_EQ(pressesOfX(*tap), 1U);
    keyboard_.strike({"LWIN"});
    ASSERT_TRUE(waitUntil([&] { return holder->menus() == 2; }));
}

TEST_F(SuperKeyTest, UnboundPressesStillReachTheWindowAndWakeNobody) {
    const auto holder = hold(Manner::mutter);
    const auto window = open();
    const auto tap = listenTo({superX(), {keyC, flags::control}});
    EXPECT_EQ(pressesOfX(*tap), 0U);
    const auto before = queue_.handedOver();
    keyboard_.strike({"LWIN", "AB03"});
    keyboard_.strike({"LWIN", "LCTL", "AB02"});
    keyboard_.strike({"AB02"});
    keyboard_.strike({"LWIN"});
    EXPECT_EQ(pressesOfX(*tap), 0U);
    EXPECT_EQ(queue_.handedOver(), before + 1);
    EXPECT_EQ(window->presses(x_), 2U);
}

TEST_F(SuperKeyTest, AChangeOfTheInterestCountsOnTheWindowsToo) {
    const auto holder = hold(Manner::mutter);
    const auto window = open();
    const auto tap = listenTo({{keyC, flags::control}, superX(flags::control)});
    keyboard_.strike({"LWIN", "AB02"});
    EXPECT_EQ(pressesOfX(*tap), 0U);
    EXPECT_EQ(window->presses(x_), 1U);
    tap->watch({{keyC, flags::control}, superX()});
    keyboard_.strike({"LWIN", "AB02"});
    EXPECT_EQ(pressesOfX(*tap), 1U);
    EXPECT_EQ(window->presses(x_), 1U);
    keyboard_.strike({"LWIN", "LCTL", "AB02"});
    EXPECT_EQ(pressesOfX(*tap), 0U);
    EXPECT_EQ(window->presses(x_), 2U);
}

TEST_F(SuperKeyTest, NothingStaysHeldOnTheWindowsOfADisabledTap) {
    const auto holder = hold(Manner::mutter);
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    tap->tap().enable(false);
    keyboard_.strike({"LWIN", "AB02"});
    EXPECT_TRUE(waitUntil([&] { return window->presses(x_) == 1; }));
    tap->tap().enable(true);
    keyboard_.strike({"LWIN", "AB02"});
    EXPECT_EQ(pressesOfX(*tap), 1U);
    EXPECT_EQ(window->presses(x_), 1U);
}

TEST_F(SuperKeyTest, AHolderThatComesLaterIsNoticedWithTheNextChangeOfTheList) {
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    const auto holder = hold(Manner::mutter);
    tap->watch(everySetWithSuper());
    expectEveryOrderOnce(*tap);
    EXPECT_EQ(window->presses(x_), 0U);
}

TEST_F(SuperKeyTest, AHolderIsNoticedSomeTimeAfterAWindowManagerHasBegun) {
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    letTheDesktopHaveStarted(*tap);
    const auto holder = hold(Manner::mutter);
    ASSERT_TRUE(reachesTheWindow(*window, *tap));
    XClient(desktop_.display()).announceWindowManager();
    EXPECT_TRUE(isGrabbedOn(*window, *tap));
}

TEST_F(SuperKeyTest, AHolderThatComesALittleLaterThanTheTapIsNoticed) {
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    const auto holder = hold(Manner::mutter);
    EXPECT_TRUE(isGrabbedOn(*window, *tap));
}

TEST_F(SuperKeyTest, AHolderThatComesUpToTwentySecondsLaterIsNoticed) {
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    queue_.advance(18s);
    EXPECT_EQ(pressesOfX(*tap), 0U);
    const auto holder = hold(Manner::mutter);
    EXPECT_TRUE(isGrabbedOn(*window, *tap));
}

TEST_F(SuperKeyTest, AHolderThatComesALittleLaterThanTheFirstBindingIsNoticed) {
    const auto window = open();
    const auto tap = listenTo({{keyC, flags::control}});
    letTheDesktopHaveStarted(*tap);
    tap->watch(everySetWithSuper());
    const auto holder = hold(Manner::mutter);
    EXPECT_TRUE(isGrabbedOn(*window, *tap));
}

TEST_F(SuperKeyTest, AHolderThatGrabsItsKeysAnewWithEveryChangeOfTheKeyboardIsNotLost) {
    auto holder = hold(Manner::mutter);
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    EXPECT_EQ(pressesOfX(*tap), 0U);
    holder.reset();
    for (int change = 0; change < 3; ++change) {
        const auto reports = tap->disabledReports;
        XClient(desktop_.display()).changeKeySymbols(1);
        ASSERT_TRUE(queue_.runUntil([&] { return tap->disabledReports > reports; }));
    }
    holder = hold(Manner::mutter);
    keyboard_.strike({"LWIN", "AB02"});
    EXPECT_EQ(pressesOfX(*tap), 1U);
    EXPECT_EQ(window->presses(x_), 0U);
}

TEST_F(SuperKeyTest, AHolderThatHasGoneIsForgotten) {
    auto holder = hold(Manner::mutter);
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    XClient other(desktop_.display());
    const auto isFree = [&] { return other.isFree({x_, XCB_MOD_MASK_4, window->window()}); };
    EXPECT_FALSE(isFree());
    holder.reset();
    tap->watch(everySetWithSuper());
    EXPECT_TRUE(queue_.runUntil(isFree));
}

TEST_F(SuperKeyTest, AHolderOfOneOfTheKeysIsNoticed) {
    const auto window = open();
    for (const std::string name : {"LWIN", "RWIN"}) {
        const auto holder = hold(Manner::mutter, {name});
        const auto tap = listenTo(everySetWithSuper());
        keyboard_.strike({name, "AB02"});
        EXPECT_EQ(pressesOfX(*tap), 1U) << name;
        EXPECT_EQ(window->presses(x_), 0U) << name;
    }
}

TEST_F(SuperKeyTest, WhereNobodyHoldsTheLoneKeyItStaysFreeForOthers) {
    const auto window = open();
    const auto tap = listenTo(everySetWithSuper());
    const auto superKey = keyboard_.keycode("LWIN");
    EXPECT_EQ(pressesOfX(*tap), 0U);
    const auto before = queue_.handedOver();
    keyboard_.strike({"LWIN"});
    EXPECT_EQ(pressesOfX(*tap), 0U);
    EXPECT_EQ(queue_.handedOver(), before + 1);
    EXPECT_EQ(window->presses(superKey), 1U);
    EXPECT_TRUE(XClient(desktop_.display()).isFree({superKey, 0}));
}

TEST_F(SuperKeyTest, WhereNobodyHoldsTheLoneKeyWindowsThatComeAndGoWakeNobody) {
    const auto tap = listenTo(everySetWithSuper());
    EXPECT_EQ(pressesOfX(*tap), 0U);
    const auto before = queue_.handedOver();
    open();
    open();
    EXPECT_EQ(pressesOfX(*tap), 0U);
    EXPECT_EQ(queue_.handedOver(), before + 1);
}

TEST_F(SuperKeyTest, WithoutABoundSuperKeyAHolderCostsNothing) {
    const auto holder = hold(Manner::mutter);
    const auto tap = listenTo({{keyC, flags::control}});
    EXPECT_EQ(pressesOfX(*tap), 0U);
    const auto before = queue_.handedOver();
    open();
    open();
    EXPECT_EQ(pressesOfX(*tap), 0U);
    EXPECT_EQ(queue_.handedOver(), before + 1);
}

TEST_F(SuperKeyTest, WhereTheRootIsBareEveryOrderIsSeenOnceAndShared) {
    const auto holder = hold(Manner::icewm);
    const auto window = open();
    window->pointAt(false);
    const auto tap = listenTo(everySetWithSuper());
    expectEveryOrderOnce(*tap);
    EXPECT_GT(window->presses(x_), 0U);
    EXPECT_EQ(tap->tap().listenOnlyCombinations().size(), 8U);
}

TEST_F(SuperKeyTest, WhereTheRootIsBareAWindowUnderThePointerHelps) {
    const auto holder = hold(Manner::icewm);
    const auto window = open();
    window->pointAt(true);
    const auto tap = listenTo(everySetWithSuper());
    expectEveryOrderOnce(*tap);
    EXPECT_EQ(window->presses(x_), 0U);
}

} // namespace

} // namespace hollowfernpike::test
