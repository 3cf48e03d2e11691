#include "hotkeys/HotkeyManager.h"

#include "hotkeys/ShortcutMapKey.h"
#include "hotkeys/Shortcuts.h"
#include "platform/EventTap.h"
#include "support/fakes/FakeServices.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using namespace platform::event_flags;
using platform::KeyCombination;
using test::addShortcut;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// What `buildShortcutMap` holds, and what the tap is told to look for.
class ShortcutMapTest : public testing::Test {
protected:
    static HotkeyManager& manager() { return HotkeyManager::shared(); }
    static ShortcutMap map() { return *manager().shortcutMap(); }

    test::FakeServices desktop;
};

TEST_F(ShortcutMapTest, MapHoldsAWholeCopyOfEachShortcut) {
    const auto added = test::shortcutFor("Editor", 49, control | option | capsLock);
    ShortcutStore::shared().add(added);
    manager().buildShortcutMap();
    const auto kept = map().at("49:786432");
    EXPECT_EQ(kept.id, added.id);
    EXPECT_EQ(kept.keyCode, added.keyCode);
    EXPECT_EQ(kept.modifierFlags, added.modifierFlags);
    EXPECT_EQ(kept.appPath, added.appPath);
    EXPECT_EQ(kept.appName, added.appName);
    EXPECT_EQ(kept.appBundleIdentifier, added.appBundleIdentifier);
}

TEST_F(ShortcutMapTest, OfTwoShortcutsWithTheSameMaskedCombinationTheLastWins) {
    addShortcut("First", 0, command | capsLock);
    addShortcut("Last", 0, command);
    addShortcut("Other", 1, command);
    manager().buildShortcutMap();
    EXPECT_EQ(map().size(), 2);
    EXPECT_EQ(map().at("0:1048576").appName, "Last");
}

TEST_F(ShortcutMapTest, SameKeyWithOtherModifiersIsAnotherShortcut) {
    addShortcut("Editor", 0, command);
    addShortcut("Player", 0, option);
    manager().buildShortcutMap();
    EXPECT_THAT(map(), UnorderedElementsAre(testing::Key("0:1048576"), testing::Key("0:524288")));
}

TEST_F(ShortcutMapTest, MapInUseStaysAsItIsWhenANewOneIsBuilt) {
    addShortcut("Editor", 0, command);
    manager().buildShortcutMap();
    const auto inUse = manager().shortcutMap();
    addShortcut("Player", 1, command);
    manager().buildShortcutMap();
    manager().stop();
    EXPECT_THAT(*inUse, ElementsAre(testing::Key("0:1048576")));
}

TEST_F(ShortcutMapTest, EmptyListEmptiesTheMap) {
    const auto only = test::shortcutFor("Editor", 0, command);
    ShortcutStore::shared().add(only);
    manager().buildShortcutMap();
    ShortcutStore::shared().remove(only.id);
    manager().buildShortcutMap();
    EXPECT_THAT(map(), IsEmpty());
}

TEST_F(ShortcutMapTest, MapIsBuiltWithoutATap) {
    addShortcut("Editor", 0, command);
    manager().buildShortcutMap();
    EXPECT_EQ(map().size(), 1);
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(ShortcutMapTest, InterestIsMaskedAndWithoutDuplicates) {
    addShortcut("First", 0, command | capsLock | nonCoalesced);
    addShortcut("Last", 0, command);
    addShortcut("Arrow", 123, control | numericPad | secondaryFunction);
    addShortcut("Bare", 122, 0);
    manager().start();
    EXPECT_THAT(desktop.eventTaps.tap()->interest(),
                UnorderedElementsAre(KeyCombination{0, command}, KeyCombination{123, control},
                                     KeyCombination{122, 0}));
}

TEST_F(ShortcutMapTest, InterestFollowsTheMap) {
    const auto editor = test::shortcutFor("Editor", 0, command);
    ShortcutStore::shared().add(editor);
    manager().start();
    addShortcut("Player", 1, option);
    manager().buildShortcutMap();
    EXPECT_THAT(desktop.eventTaps.tap()->interest(),
                UnorderedElementsAre(KeyCombination{0, command}, KeyCombination{1, option}));
    ShortcutStore::shared().remove(editor.id);
    manager().buildShortcutMap();
    EXPECT_THAT(desktop.eventTaps.tap()->interest(), ElementsAre(KeyCombination{1, option}));
}

TEST_F(ShortcutMapTest, InterestOfAnEmptyListIsEmpty) {
    manager().start();
    EXPECT_THAT(desktop.log.calls(), testing::Contains("eventTap.setInterest 0").Times(1));
    EXPECT_THAT(desktop.eventTaps.tap()->interest(), IsEmpty());
}

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
