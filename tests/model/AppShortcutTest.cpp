#include "model/AppShortcut.h"

#include "model/KeyCodeMapper.h"
#include "model/KeyNames.h"
#include "model/Shortcuts.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {
namespace {

std::string shown(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    return makeShortcut(1, keyCode, modifierFlags).displayString();
}

TEST(DisplayStringTest, WithoutFlagsIsTheBareKey) {
    EXPECT_EQ(shown(0, 0), "A");
    EXPECT_EQ(shown(122, 0), "F1");
}

TEST(DisplayStringTest, IgnoresFlagsOutsideTheModifierMask) {
    EXPECT_EQ(shown(0, capsLock), "A");
    EXPECT_EQ(shown(0, secondaryFunction), "A");
    EXPECT_EQ(shown(0, ~modifierMask), "A");
    EXPECT_EQ(shown(0, ~modifierMask | command), "⌘A");
}

TEST(DisplayStringTest, ShowsEachModifier) {
    EXPECT_EQ(shown(0, control), "\u2303A");
    EXPECT_EQ(shown(0, option), "\u2325A");
    EXPECT_EQ(shown(0, shift), "\u21E7A");
    EXPECT_EQ(shown(0, command), "\u2318A");
}

TEST(DisplayStringTest, OrderIsControlOptionShiftCommand) {
    EXPECT_EQ(shown(0, command | shift | option | control), "⌃⌥⇧⌘A");
    EXPECT_EQ(shown(0, modifierMask), "⌃⌥⇧⌘A");
    EXPECT_EQ(shown(0, 0x120000), "⇧⌘A");
    EXPECT_EQ(shown(49, 0x1C0000), "⌃⌥⌘Space");
}

TEST(DisplayStringTest, ShowsKeysWithoutANameByTheirCode) {
    EXPECT_EQ(shown(50, command), "⌘Key(50)");
    EXPECT_EQ(shown(65535, command), "⌘Key(65535)");
}

TEST(DisplayStringTest, KeypadDigitsReadLikeTheTopRow) {
    EXPECT_EQ(shown(83, command), "⌘1");
    EXPECT_EQ(shown(18, command), "⌘1");
}

TEST(AppShortcutTest, ModifierMaskHoldsTheFourModifiers) {
    EXPECT_EQ(modifierMask, shift | control | option | command);
}

TEST(KeyCodeMapperTest, NamesEightyKeys) {
    ASSERT_EQ(keyNames.size(), 80U);
    for (const auto& [keyCode, name] : keyNames) {
        EXPECT_EQ(KeyCodeMapper::keyName(keyCode), name) << keyCode;
    }
}

TEST(KeyCodeMapperTest, ShowsEveryOtherCodeAsANumber) {
    for (std::uint32_t keyCode = 0; keyCode <= 65535; ++keyCode) {
        const auto code = static_cast<std::uint16_t>(keyCode);
        if (!keyNames.contains(code)) {
            ASSERT_EQ(KeyCodeMapper::keyName(code), "Key(" + std::to_string(keyCode) + ")");
        }
    }
}

TEST(KeyCodeMapperTest, CallsKeypadDigitsAsThoseOfTheTopRow) {
    EXPECT_EQ(KeyCodeMapper::keyName(82), KeyCodeMapper::keyName(29));
    EXPECT_EQ(KeyCodeMapper::keyName(83), KeyCodeMapper::keyName(18));
}

TEST(KeyCodeMapperTest, AnswersOnEveryThread) {
    std::vector<std::string> names(8);
    std::vector<std::thread> threads;
    for (auto& name : names) {
        threads.emplace_back([&name] { name = KeyCodeMapper::keyName(36); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(names, std::vector<std::string>(8, "Return"));
}

} // namespace
} // namespace hollowfernpike::test
