#include "platform/x11/taps/KeyTapTest.h"

#include "platform/x11/windows/FocusedWindow.h"
#include "support/XClient.h"

#include <array>

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

/// Taps that know which windows are ours: those of `ours`.
class FocusedTapTest : public KeyTapTest {
protected:
    FocusedTapTest() {
        taps_.setOwnWindows([this](xcb_window_t window) { return window == ours.window(); });
    }

    bool hasLostFocus(const ListeningTap& tap) {
        return queue_.runUntil([&] { return tap.focusLosses > 0; });
    }

    FocusedWindow others{display_.name()};
    FocusedWindow ours{display_.name()};
};

TEST_F(FocusedTapTest, SeesWhatIsTypedIntoAWindowOfOurs) {
    auto tap = makeListenOnlyTap();
    keyboard_.strike({"LCTL", "AB02"});
    EXPECT_TRUE(delivered(*tap, 1));
    EXPECT_EQ(tap->focusLosses, 0);
}

TEST_F(FocusedTapTest, SeesNothingUntilAWindowOfOursHasTheFocus) {
    others.takeFocus();
    auto tap = makeListenOnlyTap();
    const auto before = queue_.handedOver();
    keyboard_.strike({"LCTL", "AB02"});
    constexpr unsigned eventsOfStrike = 4; // two keys that go down, and Control twice
    ASSERT_TRUE(queue_.runUntil([&] { return queue_.handedOver() >= before + eventsOfStrike; }));
    bool areHandled = false;
    queue_.async([&] { areHandled = true; });
    ASSERT_TRUE(queue_.runUntil([&] { return areHandled; }));
    EXPECT_TRUE(tap->presses.empty());
    ours.takeFocus();
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(delivered(*tap, 1));
    ASSERT_EQ(tap->presses.size(), 1U);
    EXPECT_EQ(tap->presses[0].keyCode, keyC);
    EXPECT_EQ(tap->focusLosses, 0) << "the focus has come, not gone";
}

TEST_F(FocusedTapTest, TellsOfTheLossAfterThePressesBeforeIt) {
    auto tap = makeListenOnlyTap();
    keyboard_.strike({"LCTL", "AB02"});
    others.takeFocus();
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(hasLostFocus(*tap));
    ASSERT_EQ(tap->presses.size(), 1U);
    EXPECT_EQ(tap->presses[0].keyCode, keyX);
}

TEST_F(FocusedTapTest, AnotherClientWithTheKeyboardIsALoss) {
    auto tap = makeListenOnlyTap();
    XClient locker(display_.name());
    ASSERT_TRUE(locker.grabKeyboard());
    keyboard_.strike({"LFSH", "AB02"});
    EXPECT_TRUE(hasLostFocus(*tap));
    EXPECT_TRUE(tap->presses.empty());
}

TEST_F(FocusedTapTest, AKeyThatAnotherClientHoldsIsNone) {
    auto tap = makeListenOnlyTap();
    XClient holder(display_.name());
    const auto super = keyboard_.keycode("LWIN");
    ASSERT_TRUE(holder.grab({super, 0}));
    keyboard_.press("LWIN");
    ASSERT_TRUE(holder.waitForPress({super, 0}));
    keyboard_.strike({"AB02"});
    keyboard_.release("LWIN");
    ASSERT_TRUE(delivered(*tap, 1));
    EXPECT_EQ(tap->presses[0].flags, flags::command | flags::nonCoalesced);
    EXPECT_EQ(tap->focusLosses, 0);
}

constexpr std::uint64_t fourModifiers =
    flags::shift | flags::control | flags::option | flags::command;
constexpr unsigned thirdLevel = XCB_MOD_MASK_5;

template <class Item, std::size_t count>
std::vector<std::vector<Item>> subsetsOf(const std::array<Item, count>& items) {
    std::vector<std::vector<Item>> subsets(std::size_t{1} << count);
    for (std::size_t subset = 0; subset < subsets.size(); ++subset) {
        for (std::size_t item = 0; item < count; ++item) {
            if ((subset >> item & 1U) != 0) {
                subsets[subset].push_back(items.at(item));
            }
        }
    }
    return subsets;
}

const auto keySets = subsetsOf(std::array<std::string, 5>{"LFSH", "LCTL", "LALT", "LWIN", "RALT"});
const auto lockSets =
    subsetsOf(std::array<unsigned, 3>{XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, thirdLevel});

/// Recorders take what a listen-only tap reports, an active tap fires for what is bound. The
/// parameter is a layout whose right Alt key shifts to the third level.
class TapAgreementTest : public KeyTapTest, public testing::WithParamInterface<const char*> {
protected:
    TapAgreementTest() {
        run({"setxkbmap", "-layout", GetParam()});
        auto interest = std::vector{combination(keyC, 0)};
        for (std::uint64_t set = 1; set < 16; ++set) {
            interest.push_back(combination(keyX, set * flags::shift));
        }
        active_ = makeActiveTap();
        active_->watch(interest);
        recorder_ = makeListenOnlyTap();
    }

    /// Presses X with these keys held while these modifiers are locked, then C alone, which ends
    /// what the taps have to tell.
    void press(const std::vector<std::string>& held, const std::vector<unsigned>& locked) {
        active_->presses.clear();
        recorder_->presses.clear();
        for (const auto modifier : locked) {
            client_.lockModifiers(modifier, true);
        }
        auto keys = held;
        keys.emplace_back("AB02");
        keyboard_.strike(keys);
        for (const auto modifier : locked) {
            client_.lockModifiers(modifier, false);
        }
        keyboard_.strike({"AB03"});
        ASSERT_TRUE(queue_.runUntil([&] { return hasEnded(*active_) && hasEnded(*recorder_); }));
    }

    std::uint64_t recordable() const { return recorder_->presses.front().flags & fourModifiers; }

    /// None if the press of X did not fire.
    std::optional<std::uint64_t> fired() const {
        const auto& first = active_->presses.front();
        return first.keyCode == keyX ? std::optional(first.flags & fourModifiers) : std::nullopt;
    }

    std::unique_ptr<ListeningTap> active_;
    std::unique_ptr<ListeningTap> recorder_;
    XClient client_{display_.name()};

private:
    static bool hasEnded(const ListeningTap& tap) {
        return !tap.presses.empty() && tap.presses.back().keyCode == keyC;
    }
};

TEST_P(TapAgreementTest, WhatCanBeRecordedFiresAndNothingElse) {
    std::size_t recordableCount = 0;
    for (const auto& locked : lockSets) {
        for (const auto& held : keySets) {
            SCOPED_TRACE(testing::PrintToString(held) + " held, locked " +
                         testing::PrintToString(locked));
            ASSERT_NO_FATAL_FAILURE(press(held, locked));
            if (recordable() == 0) {
                EXPECT_EQ(fired(), std::nullopt);
            } else {
                EXPECT_EQ(fired(), recordable());
                ++recordableCount;
            }
        }
    }
    // Each set of the four but the empty one, with each set of the locks of letters and numbers.
    EXPECT_EQ(recordableCount, 15U * 4U);
}

TEST_P(TapAgreementTest, TheThirdLevelTakesTheModifiersFromAPress) {
    press({"LCTL", "LFSH", "RALT"}, {});
    EXPECT_EQ(recordable(), 0U);
    EXPECT_EQ(fired(), std::nullopt);
}

std::string layoutName(const testing::TestParamInfo<const char*>& layout) {
    std::string name = layout.param;
    std::erase_if(name, [](char letter) { return letter == '(' || letter == ')'; });
    return name;
}

INSTANTIATE_TEST_SUITE_P(Layouts, TapAgreementTest, testing::Values("de", "fr", "us(intl)"),
                         layoutName);

} // namespace

} // namespace hollowfernpike::test
