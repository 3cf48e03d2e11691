#include "platform/x11/keyboard/KeyboardMap.h"

#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <xcb/xproto.h>

namespace hollowfernpike::test {

namespace {

namespace flags = platform::event_flags;
using x11::KeyboardDescription;
using x11::KeyState;

constexpr xcb_keycode_t someKey = 40;
constexpr xcb_keycode_t otherKey = 41;

KeyboardDescription keyboard() {
    KeyboardDescription description;
    description.firstKey = 8;
    description.lastKey = 255;
    description.virtualModifiers = {
        {"Alt", {.bit = 1, .modifiers = XCB_MOD_MASK_1}},
        {"Super", {.bit = 2, .modifiers = XCB_MOD_MASK_4}},
        {"NumLock", {.bit = 4, .modifiers = XCB_MOD_MASK_2}},
        {"ScrollLock", {.bit = 8, .modifiers = 0}},
    };
    return description;
}

KeyboardDescription keyboardWith(std::string_view keyName) {
    auto description = keyboard();
    description.keys.at(someKey).name = keyName;
    return description;
}

std::int64_t codeOf(std::string_view keyName) {
    return x11::KeyboardMap{keyboardWith(keyName)}.event({someKey, 0}).value().keyCode;
}

TEST(KeyboardMapTest, FindsAPositionByTheNameOfTheKeyWhateverItsNumber) {
    EXPECT_EQ(codeOf("AC01"), 0);
    EXPECT_EQ(codeOf("TLDE"), 50);
}

TEST(KeyboardMapTest, FindsAPositionByAnAliasOfTheKey) {
    auto description = keyboardWith("ODD");
    description.aliases = {{"ODD", "STRG"}, {"ODD", "AC12"}, {"REST", "AC01"}};
    EXPECT_EQ(x11::KeyboardMap{description}.event({someKey, 0})->keyCode, 42);
}

TEST(KeyboardMapTest, GivesKeysWithoutAPositionTheKernelsCodeAbove255) {
    EXPECT_EQ(codeOf("PRSC"), 256 + 99);
    EXPECT_EQ(codeOf("PAUS"), 256 + 119);
    EXPECT_EQ(codeOf("SCLK"), 256 + 70);
    EXPECT_EQ(codeOf("COMP"), 256 + 127);
    EXPECT_EQ(codeOf("MENU"), 256 + 127);
    EXPECT_EQ(codeOf("MUTE"), 256 + 113);
    EXPECT_EQ(codeOf("VOL-"), 256 + 114);
    EXPECT_EQ(codeOf("VOL+"), 256 + 115);
    EXPECT_EQ(codeOf("POWR"), 256 + 116);
    EXPECT_EQ(codeOf("I172"), 256 + 164);
}

TEST(KeyboardMapTest, GivesKeysWithAnUnknownNameTheKernelsCodeOfTheirNumber) {
    const auto expected = 256 + someKey - 8;
    EXPECT_EQ(codeOf(""), expected);
    EXPECT_EQ(codeOf("WHAT"), expected);
    EXPECT_EQ(codeOf("I5F"), expected);
    EXPECT_EQ(codeOf("I007"), expected);
    EXPECT_EQ(codeOf("I12x"), expected);
}

TEST(KeyboardMapTest, ReportsNothingForModifierKeys) {
    for (const unsigned modifier :
         {XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_CONTROL, XCB_MOD_MASK_1,
          XCB_MOD_MASK_3, XCB_MOD_MASK_4, XCB_MOD_MASK_5}) {
        auto description = keyboardWith("AC01");
        description.keys.at(someKey).modifiers = static_cast<freedesktop::ModifierState>(modifier);
        const x11::KeyboardMap map{description};
        EXPECT_FALSE(map.event({someKey, 0})) << modifier;
        EXPECT_FALSE(map.combination({someKey, 0})) << modifier;
        EXPECT_TRUE(map.presses({.keyCode = 0, .modifierFlags = 0}).empty()) << modifier;
    }
}

TEST(KeyboardMapTest, ReportsNothingForAKeyOfAVirtualModifierAlone) {
    auto description = keyboardWith("RALT");
    description.keys.at(someKey).virtualModifiers = 16;
    EXPECT_FALSE(x11::KeyboardMap{description}.event({someKey, 0}));
}

TEST(KeyboardMapTest, ReportsNothingForAKeyThatActsAsAModifierOrSwitchesTheLayout) {
    auto description = keyboardWith("RALT");
    description.keys.at(someKey).actionModifiers = XCB_MOD_MASK_5;
    description.keys.at(otherKey).changesGroup = true;
    const x11::KeyboardMap map{description};
    EXPECT_FALSE(map.event({someKey, 0}));
    EXPECT_FALSE(map.event({otherKey, 0}));
}

TEST(KeyboardMapTest, ReportsTheLockKeysOfNumbersAndScrolling) {
    auto description = keyboardWith("NMLK");
    auto& numLock = description.keys.at(someKey);
    numLock.modifiers = XCB_MOD_MASK_2;
    numLock.virtualModifiers = 4;
    numLock.actionModifiers = XCB_MOD_MASK_2;
    description.keys.at(otherKey).name = "SCLK";
    description.keys.at(otherKey).virtualModifiers = 8;
    const x11::KeyboardMap map{description};
    EXPECT_EQ(map.event({someKey, 0})->keyCode, 71);
    EXPECT_EQ(map.event({otherKey, 0})->keyCode, 256 + 70);
}

TEST(KeyboardMapTest, KnowsTheSuperKeysByWhatTheyDoWhateverTheyAreCalled) {
    auto description = keyboardWith("LALT");
    description.keys.at(someKey).modifiers = XCB_MOD_MASK_4;
    description.keys.at(otherKey).name = "LWIN";
    description.keys.at(otherKey).modifiers = XCB_MOD_MASK_1;
    EXPECT_THAT(x11::KeyboardMap{description}.superKeys(), testing::ElementsAre(someKey));
}

TEST(KeyboardMapTest, TranslatesTheModifiersHeld) {
    const x11::KeyboardMap map{keyboardWith("AC01")};
    const auto flagsWith = [&](unsigned state) {
        return map.event({someKey, static_cast<freedesktop::ModifierState>(state)})->flags;
    };
    EXPECT_EQ(flagsWith(0), flags::nonCoalesced);
    EXPECT_EQ(flagsWith(XCB_MOD_MASK_SHIFT), flags::nonCoalesced | flags::shift);
    EXPECT_EQ(flagsWith(XCB_MOD_MASK_CONTROL), flags::nonCoalesced | flags::control);
    EXPECT_EQ(flagsWith(XCB_MOD_MASK_1), flags::nonCoalesced | flags::option);
    EXPECT_EQ(flagsWith(XCB_MOD_MASK_4), flags::nonCoalesced | flags::command);
    EXPECT_EQ(flagsWith(XCB_MOD_MASK_LOCK), flags::nonCoalesced | flags::capsLock);
    EXPECT_EQ(flagsWith(XCB_MOD_MASK_2 | XCB_MOD_MASK_5), flags::nonCoalesced);
}

TEST(KeyboardMapTest, MarksKeypadFunctionNavigationAndHelpKeys) {
    const auto flagsOf = [](std::string_view name) {
        return x11::KeyboardMap{keyboardWith(name)}.event({someKey, 0})->flags &
               ~flags::nonCoalesced;
    };
    EXPECT_EQ(flagsOf("AC01"), 0U);
    EXPECT_EQ(flagsOf("KP5"), flags::numericPad);
    EXPECT_EQ(flagsOf("KPEN"), flags::numericPad);
    EXPECT_EQ(flagsOf("LEFT"), flags::numericPad | flags::secondaryFunction);
    EXPECT_EQ(flagsOf("FK05"), flags::secondaryFunction);
    EXPECT_EQ(flagsOf("FK20"), flags::secondaryFunction);
    EXPECT_EQ(flagsOf("HOME"), flags::secondaryFunction);
    EXPECT_EQ(flagsOf("DELE"), flags::secondaryFunction);
    EXPECT_EQ(flagsOf("INS"), flags::secondaryFunction | flags::help);
    EXPECT_EQ(flagsOf("PRSC"), 0U);
}

TEST(KeyboardMapTest, FallsBackToMetaAndHyperWhereAltAndSuperAreNowhere) {
    auto description = keyboardWith("AC01");
    description.virtualModifiers = {
        {"Alt", {.bit = 1, .modifiers = 0}},
        {"Meta", {.bit = 2, .modifiers = XCB_MOD_MASK_3}},
        {"Hyper", {.bit = 4, .modifiers = XCB_MOD_MASK_5}},
    };
    const x11::KeyboardMap map{description};
    EXPECT_EQ(map.combination({someKey, XCB_MOD_MASK_3})->modifierFlags, flags::option);
    EXPECT_EQ(map.combination({someKey, XCB_MOD_MASK_5})->modifierFlags, flags::command);
    EXPECT_FALSE(map.combination({someKey, XCB_MOD_MASK_1}));
    EXPECT_FALSE(map.combination({someKey, XCB_MOD_MASK_4}));
}

TEST(KeyboardMapTest, ListsAPressForEachStateOfTheLocks) {
    const x11::KeyboardMap map{keyboardWith("AC01")};
    const auto presses = map.presses({.keyCode = 0, .modifierFlags = flags::command});
    const std::vector<KeyState> expected{
        {someKey, XCB_MOD_MASK_4},
        {someKey, XCB_MOD_MASK_4 | XCB_MOD_MASK_LOCK},
        {someKey, XCB_MOD_MASK_4 | XCB_MOD_MASK_2},
        {someKey, XCB_MOD_MASK_4 | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2},
    };
    EXPECT_THAT(presses, testing::UnorderedElementsAreArray(expected));
}

TEST(KeyboardMapTest, CountsAScrollLockModifierAmongTheLocks) {
    auto description = keyboardWith("AC01");
    description.virtualModifiers["ScrollLock"].modifiers = XCB_MOD_MASK_3;
    EXPECT_EQ(x11::KeyboardMap{description}.presses({.keyCode = 0, .modifierFlags = 0}).size(), 8U);
}

TEST(KeyboardMapTest, ListsEveryKeyOfAPosition) {
    auto description = keyboardWith("BKSL");
    description.keys.at(otherKey).name = "AC12";
    const auto presses =
        x11::KeyboardMap{description}.presses({.keyCode = 42, .modifierFlags = flags::control});
    EXPECT_EQ(presses.size(), 8U);
    EXPECT_EQ(presses.front().key, someKey);
    EXPECT_EQ(presses.back().key, otherKey);
}

TEST(KeyboardMapTest, ListsNoPressForWhatTheKeyboardCannotProduce) {
    auto description = keyboardWith("AC01");
    description.virtualModifiers.erase("Super");
    const x11::KeyboardMap map{description};
    EXPECT_TRUE(map.presses({.keyCode = 0, .modifierFlags = flags::command}).empty());
    EXPECT_TRUE(map.presses({.keyCode = 12, .modifierFlags = flags::control}).empty());
    EXPECT_TRUE(map.presses({.keyCode = 65535, .modifierFlags = flags::control}).empty());
}

TEST(KeyboardMapTest, ListsNoPressWhereTwoModifiersShareAPlace) {
    auto description = keyboardWith("AC01");
    description.virtualModifiers["Super"].modifiers = XCB_MOD_MASK_1;
    const x11::KeyboardMap map{description};
    EXPECT_TRUE(map.presses({.keyCode = 0, .modifierFlags = flags::command}).empty());
    EXPECT_FALSE(
        map.presses({.keyCode = 0, .modifierFlags = flags::command | flags::option}).empty());
}

TEST(KeyboardMapTest, TakesALevelShiftForAnotherCombination) {
    const x11::KeyboardMap map{keyboardWith("AC01")};
    const KeyState press{someKey, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_5};
    EXPECT_FALSE(map.combination(press));
    EXPECT_EQ(map.event(press)->flags, flags::nonCoalesced | flags::capsLock);
}

} // namespace

} // namespace hollowfernpike::test
