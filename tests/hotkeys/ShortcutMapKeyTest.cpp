#include "hotkeys/ShortcutMapKey.h"

#include "platform/EventTap.h"

#include <gtest/gtest.h>

#include <limits>

namespace hollowfernpike {

namespace {

using namespace platform::event_flags;

TEST(ShortcutMapKey, IsTheKeyCodeAColonAndTheFlagsInDecimal) {
    EXPECT_EQ(ShortcutMapKey(0, command | shift).text(), "0:1179648");
    EXPECT_EQ(ShortcutMapKey(49, control | option).text(), "49:786432");
    EXPECT_EQ(ShortcutMapKey(12, command).text(), "12:1048576");
}

// What other tests call a modifier is what documents have kept since the first release.
TEST(ShortcutMapKey, EachModifierHasItsBit) {
    EXPECT_EQ(ShortcutMapKey(0, shift).text(), "0:131072");
    EXPECT_EQ(ShortcutMapKey(0, control).text(), "0:262144");
    EXPECT_EQ(ShortcutMapKey(0, option).text(), "0:524288");
    EXPECT_EQ(ShortcutMapKey(0, command).text(), "0:1048576");
    EXPECT_EQ(capsLock, 0x10000U);
    EXPECT_EQ(secondaryFunction, 0x800000U);
}

TEST(ShortcutMapKey, OfABareKeyEndsInZero) {
    EXPECT_EQ(ShortcutMapKey(122, 0).text(), "122:0");
}

TEST(ShortcutMapKey, KeepsTheFourModifiersAndNoOtherBit) {
    const auto everyBit = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(ShortcutMapKey(1, everyBit).text(), "1:1966080");
    EXPECT_EQ(ShortcutMapKey(1, everyBit & ~(shift | control | option | command)).text(), "1:0");
}

TEST(ShortcutMapKey, DropsEveryOtherBitOneByOne) {
    for (int bit = 0; bit < 64; ++bit) {
        const auto flag = std::uint64_t{1} << bit;
        const bool isModifier =
            flag == shift || flag == control || flag == option || flag == command;
        EXPECT_EQ(ShortcutMapKey(7, flag).text(),
                  "7:" + std::to_string(isModifier ? flag : std::uint64_t{0}));
    }
}

TEST(ShortcutMapKey, HasRoomForTheLongestText) {
    EXPECT_EQ(ShortcutMapKey(65535, 0x1E0000).text(), "65535:1966080");
}

TEST(ShortcutMapKey, TellsApartWhatLooksAlikeWithoutTheColon) {
    EXPECT_NE(ShortcutMapKey(1, shift).text(), ShortcutMapKey(11, 0).text());
}

} // namespace

} // namespace hollowfernpike
