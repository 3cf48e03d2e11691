#include "platform/x11/taps/KeyTapTest.h"
#include "support/XClient.h"

#include <array>
#include <utility>

namespace hollowfernpike::test {

namespace {

class ActiveTapTest : public KeyTapTest {
protected:
    /// The names of the keys that make these modifiers, then the X key.
    static std::vector<std::string> keysFor(std::uint64_t modifiers) {
        const std::array<std::pair<std::uint64_t, std::string>, 4> keys{{{flags::shift, "LFSH"},
                                                                         {flags::control, "LCTL"},
                                                                         {flags::option, "LALT"},
                                                                         {flags::command, "LWIN"}}};
        std::vector<std::string> names;
        for (const auto& [flag, name] : keys) {
            if ((modifiers & flag) != 0) {
                names.push_back(name);
            }
        }
        names.emplace_back("AB02");
        return names;
    }

    static std::vector<platform::KeyCombination> everyModifierSet() {
        std::vector<platform::KeyCombination> combinations;
        for (std::uint64_t set = 0; set < 16; ++set) {
            combinations.push_back(combination(keyX, set * flags::shift));
        }
        return combinations;
    }

    void expectEveryModifierSet(std::uint64_t lockFlags) {
        auto tap = makeActiveTap();
        tap->watch(everyModifierSet());
        for (const auto& wanted : everyModifierSet()) {
            tap->presses.clear();
            keyboard_.strike(keysFor(wanted.modifierFlags));
            ASSERT_TRUE(delivered(*tap, 1)) << wanted.modifierFlags;
            EXPECT_EQ(tap->presses.front().keyCode, keyX);
            EXPECT_EQ(tap->presses.front().flags,
                      wanted.modifierFlags | lockFlags | flags::nonCoalesced);
        }
    }
};

TEST_F(ActiveTapTest, ReportsACombinationOfInterestWithItsTime) {
    x11::UserTime timeSeenByAnotherClient;
    x11::EventTaps others(queue_, timeSeenByAnotherClient, display_.name());
    ListeningTap other(others, platform::EventTapOptions::listenOnly);
    other.tap().enable(true);
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::control)});
    std::vector<std::uint64_t> holds;
    tap->onPress = [&] { holds.push_back(userTime_.hold()); };
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap, 2));
    ASSERT_TRUE(delivered(other, 2));
    EXPECT_EQ(tap->presses[0].keyCode, keyX);
    EXPECT_EQ(tap->presses[0].flags, flags::control | flags::nonCoalesced);
    EXPECT_NE(userTime_.time(), static_cast<xcb_timestamp_t>(XCB_CURRENT_TIME));
    EXPECT_EQ(userTime_.time(), timeSeenByAnotherClient.time());
    EXPECT_EQ(holds, (std::vector<std::uint64_t>{1, 1})) << "recorded before it is told";
}

TEST_F(ActiveTapTest, TellsAllModifierSetsApart) {
    expectEveryModifierSet(0);
}

TEST_F(ActiveTapTest, TellsAllModifierSetsApartWithCapsLockOn) {
    keyboard_.strike({"CAPS"});
    ASSERT_NE(XClient(display_.name()).lockedModifiers() & XCB_MOD_MASK_LOCK, 0);
    expectEveryModifierSet(flags::capsLock);
}

TEST_F(ActiveTapTest, TellsAllModifierSetsApartWithNumLockOn) {
    keyboard_.strike({"NMLK"});
    ASSERT_NE(XClient(display_.name()).lockedModifiers(), 0);
    expectEveryModifierSet(0);
}

TEST_F(ActiveTapTest, TellsAllModifierSetsApartWithBothLocksOn) {
    keyboard_.strike({"NMLK"});
    keyboard_.strike({"CAPS"});
    expectEveryModifierSet(flags::capsLock);
}

TEST_F(ActiveTapTest, KnowsTheModifiersOfBothHands) {
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::shift), combination(keyX, flags::control),
                combination(keyX, flags::option), combination(keyX, flags::command)});
    for (const auto* modifier : {"RTSH", "RCTL", "RALT", "RWIN"}) {
        keyboard_.strike({modifier, "AB02"});
    }
    ASSERT_TRUE(delivered(*tap, 4));
    EXPECT_EQ(tap->presses[0].flags, flags::shift | flags::nonCoalesced);
    EXPECT_EQ(tap->presses[1].flags, flags::control | flags::nonCoalesced);
    EXPECT_EQ(tap->presses[2].flags, flags::option | flags::nonCoalesced);
    EXPECT_EQ(tap->presses[3].flags, flags::command | flags::nonCoalesced);
}

TEST_F(ActiveTapTest, MatchesKeysThatCarryFlagsOfTheirOwn) {
    auto tap = makeActiveTap();
    tap->watch({combination(123, flags::command), combination(122, 0), combination(83, 0)});
    keyboard_.strike({"LWIN", "LEFT"});
    keyboard_.strike({"FK01"});
    keyboard_.strike({"KP1"});
    ASSERT_TRUE(delivered(*tap, 3));
    EXPECT_EQ(tap->presses[0].flags,
              flags::command | flags::numericPad | flags::secondaryFunction | flags::nonCoalesced);
    EXPECT_EQ(tap->presses[1].flags, flags::secondaryFunction | flags::nonCoalesced);
    EXPECT_EQ(tap->presses[2].flags, flags::numericPad | flags::nonCoalesced);
}

TEST_F(ActiveTapTest, StaysSilentAboutOtherCombinationsAndModifierKeysAlone) {
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::control), combination(keyC, 0)});
    for (const auto* key : {"LFSH", "LCTL", "LALT", "LWIN", "RTSH", "RCTL", "RALT", "RWIN"}) {
        keyboard_.strike({key});
    }
    keyboard_.strike({"AB02"});
    keyboard_.strike({"LCTL", "LFSH", "AB02"});
    keyboard_.strike({"LCTL", "AB03"});
    keyboard_.strike({"AB03"});
    ASSERT_TRUE(delivered(*tap, 1));
    ASSERT_EQ(tap->presses.size(), 1U);
    EXPECT_EQ(tap->presses[0].keyCode, keyC);
}

TEST_F(ActiveTapTest, TakesAltGrForAnotherCombination) {
    run({"setxkbmap", "de"});
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::control), combination(keyC, 0)});
    keyboard_.strike({"RALT", "LCTL", "AB02"});
    keyboard_.strike({"RALT", "AB03"});
    keyboard_.strike({"AB03"});
    ASSERT_TRUE(delivered(*tap, 1));
    ASSERT_EQ(tap->presses.size(), 1U);
    EXPECT_EQ(tap->presses[0].keyCode, keyC);
}

TEST_F(ActiveTapTest, ReportsEveryRepeatWhileTheCombinationIsHeld) {
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::control)});
    keyboard_.press("LCTL");
    keyboard_.press("AB02");
    EXPECT_TRUE(delivered(*tap, 4));
    keyboard_.release("AB02");
    keyboard_.release("LCTL");
    for (const auto& press : tap->presses) {
        EXPECT_EQ(press.keyCode, keyX);
        EXPECT_EQ(press.flags, flags::control | flags::nonCoalesced);
    }
}

TEST_F(ActiveTapTest, FollowsTheInterest) {
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::control), combination(keyX, flags::option)});
    tap->watch({combination(keyX, flags::option), combination(keyC, flags::option)});
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"LALT", "AB02"});
    keyboard_.strike({"LALT", "AB03"});
    ASSERT_TRUE(delivered(*tap, 2));
    EXPECT_EQ(tap->presses.size(), 2U);
    EXPECT_EQ(tap->presses[0].keyCode, keyX);
    EXPECT_EQ(tap->presses[1].keyCode, keyC);
}

TEST_F(ActiveTapTest, TakesTheSameCombinationTwiceForOne) {
    auto tap = makeActiveTap();
    tap->watch({combination(keyX, flags::control), combination(keyX, flags::control)});
    EXPECT_TRUE(tap->tap().listenOnlyCombinations().empty());
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"LCTL", "AB02"});
    ASSERT_TRUE(delivered(*tap, 2));
    EXPECT_EQ(tap->presses.size(), 2U);
}

TEST_F(ActiveTapTest, TwoTapsKeepTheirOwnCombinations) {
    auto first = makeActiveTap();
    auto second = makeActiveTap();
    first->watch({combination(keyX, flags::control)});
    second->watch({combination(keyC, flags::control)});
    keyboard_.strike({"LCTL", "AB02"});
    keyboard_.strike({"LCTL", "AB03"});
    ASSERT_TRUE(delivered(*first, 1));
    ASSERT_TRUE(delivered(*second, 1));
    EXPECT_EQ(first->presses[0].keyCode, keyX);
    EXPECT_EQ(second->presses[0].keyCode, keyC);
}

} // namespace

} // namespace hollowfernpike::test
