#include "platform/wayland/keyboard/Keymap.h"

#include "platform/wayland/CompiledKeymap.h"

#include <gtest/gtest.h>

namespace hollowfernpike::test {

namespace {

namespace real = freedesktop::real_modifiers;

// XKB key codes.
constexpr std::uint32_t digitOne = 10;
constexpr std::uint32_t rightOfTab = 24;
constexpr std::uint32_t leftOfX = 52;
constexpr std::uint32_t keypadFive = 84;
constexpr std::uint32_t enter = 36;

class KeymapTest : public testing::Test {
protected:
    std::unique_ptr<wayland::Keymap> keymap = wayland::Keymap::parse(keymapText("us,de,ru"));
};

TEST_F(KeymapTest, ALetterAnswersWithExactlyItsModifiers) {
    EXPECT_TRUE(keymap->gives(rightOfTab, real::mod1, "q", real::mod1));
    EXPECT_FALSE(keymap->gives(rightOfTab, real::mod1, "q", real::mod4));
    EXPECT_FALSE(keymap->gives(rightOfTab, real::mod1 | real::control, "q", real::mod1));
    EXPECT_FALSE(keymap->gives(rightOfTab, real::mod1, "w", real::mod1));
}

TEST_F(KeymapTest, LettersAndNamesAreTakenWithoutCase) {
    EXPECT_TRUE(keymap->gives(rightOfTab, real::mod4, "Q", real::mod4));
    EXPECT_TRUE(keymap->gives(enter, real::mod4, "return", real::mod4));
}

TEST_F(KeymapTest, EveryLayoutOfTheMapCounts) {
    EXPECT_TRUE(keymap->gives(leftOfX, real::mod1, "z", real::mod1));
    EXPECT_TRUE(keymap->gives(leftOfX, real::mod1, "y", real::mod1));
    EXPECT_TRUE(keymap->gives(leftOfX, real::mod1, "Cyrillic_ya", real::mod1));
}

TEST_F(KeymapTest, ASignThatShiftGivesAnswersWithShiftHeld) {
    EXPECT_TRUE(keymap->gives(digitOne, real::mod4 | real::shift, "exclam", real::mod4));
    EXPECT_TRUE(keymap->gives(digitOne, real::mod4 | real::shift, "1", real::mod4 | real::shift));
    EXPECT_FALSE(keymap->gives(digitOne, real::mod4, "exclam", real::mod4));
}

TEST_F(KeymapTest, AKeyOfTheKeypadAnswersInBothStatesOfNumLock) {
    EXPECT_TRUE(keymap->gives(keypadFive, real::mod1, "KP_5", real::mod1));
    EXPECT_TRUE(keymap->gives(keypadFive, real::mod1, "KP_Begin", real::mod1));
}

TEST_F(KeymapTest, WhatIsNoKeySymbolAnswersNothing) {
    EXPECT_FALSE(keymap->gives(rightOfTab, real::mod1, "button1", real::mod1));
    EXPECT_FALSE(keymap->gives(rightOfTab, real::mod1, "", real::mod1));
}

TEST(KeymapTextTest, WhatIsNoKeyboardMapIsNone) {
    EXPECT_EQ(wayland::Keymap::parse(""), nullptr);
    EXPECT_EQ(wayland::Keymap::parse("xkb_keymap { nonsense };"), nullptr);
}

} // namespace

} // namespace hollowfernpike::test
