#include "desktop/kde/KWinStory.h"
#include "desktop/kde/ShortcutSettings.h"
#include "desktop/resident/StatusMenu.h"
#include "desktop/wayland/KeyboardUserOnWayland.h"

#include <csignal>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// As Qt counts keys.
constexpr int meta = 0x10000000;
constexpr int f9 = 0x01000038;
constexpr Combination commandM{46, command};
constexpr Combination altTab{48, option};
constexpr const char* bringsTarget = "「Target」を前面に表示";

class SettingsOnKWinTest : public testing::Test {
protected:
    KWinStory story;
    Application& front = story.open("Front");
    Application& target = story.open("Target");
    ShortcutSettings settings{story.desktop.bus().address()};

    void SetUp() override { story.bind(bound, target); }

    ListedShortcut listed(const std::string& label = bringsTarget) {
        std::optional<ListedShortcut> found;
        EXPECT_TRUE(waitUntil([&] { return (found = settings.find(label)).has_value(); }));
        return found.value_or(ListedShortcut{});
    }

    /// What the user does in the settings; returns once the utility has answered to it.
    void change(const std::vector<int>& keys) {
        const auto before = story.bindings();
        settings.change(listed(), keys);
        ASSERT_TRUE(story.bindsAgain(before));
    }

    Combination saved() {
        const auto list = shortcutsIn(story.shortcutsFile());
        return {list.at(0).at("keyCode"), list.at(0).at("modifierFlags")};
    }
};

TEST_F(SettingsOnKWinTest, TheListSaysWhatEachCombinationDoes) {
    story.bind(another, front);
    story.startUtility();
    EXPECT_THAT(listed().keys, SizeIs(1));
    EXPECT_THAT(listed("「Front」を前面に表示").keys, SizeIs(1));
    EXPECT_THAT(settings.list(), SizeIs(2));
}

TEST_F(SettingsOnKWinTest, TheListIsInTheLanguageOfTheInterface) {
    StatusMenu menu{story.session()};
    menu.startHost();
    story.startUtility();
    ASSERT_TRUE(menu.showsItem()) << story.utilityTells();
    menu.choose("English");
    EXPECT_THAT(listed("Bring Target to the front").keys, SizeIs(1));
    EXPECT_THAT(settings.list(), SizeIs(1));
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(SettingsOnKWinTest, AnotherCombinationChosenThereIsThatOfTheShortcut) {
    story.startUtility();
    change({meta | 'M'});
    EXPECT_TRUE(story.brings(target, front, commandM));
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_EQ(saved().keyCode, commandM.keyCode);
    EXPECT_EQ(saved().modifierFlags, commandM.modifierFlags);
    EXPECT_THAT(settings.list(), SizeIs(1));
}

TEST_F(SettingsOnKWinTest, AKeyThatNoShortcutCanHaveIsPutBack) {
    story.startUtility();
    const auto before = listed().keys;
    change({f9});
    EXPECT_TRUE(waitUntil([&] { return listed().keys == before; }));
    EXPECT_TRUE(story.passes(front, {"FK09"}));
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(saved().keyCode, bound.keyCode);
}

TEST_F(SettingsOnKWinTest, ACombinationThatIsTakenAwayThereStaysAway) {
    story.startUtility();
    change({});
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_EQ(saved().keyCode, bound.keyCode) << "nothing is lost";
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, bound)) << "until the program starts anew";
}

TEST_F(SettingsOnKWinTest, ACombinationThatIsGivenBackWorksAgain) {
    story.startUtility();
    const auto before = listed().keys;
    change({});
    change(before);
    EXPECT_TRUE(story.brings(target, front, bound));
    change({});
    change({f9});
    EXPECT_TRUE(waitUntil([&] { return listed().keys == before; })) << "in the place of F9";
    EXPECT_TRUE(story.brings(target, front, bound));
}

TEST_F(SettingsOnKWinTest, ASecondCombinationReplacesTheFirst) {
    story.startUtility();
    auto both = listed().keys;
    both.push_back(meta | 'M');
    change(both);
    EXPECT_TRUE(story.brings(target, front, commandM));
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_EQ(saved().keyCode, commandM.keyCode);
}

TEST_F(SettingsOnKWinTest, AKeyThatAnotherProgramLetsGoIsTaken) {
    settings.registerOther("Other program", {meta | 'M'});
    story.bind(commandM, front);
    story.startUtility();
    ASSERT_THAT(story.utilityTells(), testing::HasSubstr("refused"));
    const auto before = story.bindings();
    settings.changeOther("Other program", {});
    ASSERT_TRUE(story.bindsAgain(before));
    EXPECT_TRUE(story.brings(front, target, commandM));
}

TEST_F(SettingsOnKWinTest, AfterACleanEndTheListStaysAndTheKeysAreFree) {
    story.startUtility();
    story.utility().signal(SIGTERM);
    ASSERT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_THAT(settings.list(), SizeIs(1));
}

TEST_F(SettingsOnKWinTest, WhatAKilledRunHasLeftIsTakenBack) {
    story.startUtility();
    story.utility().signal(SIGKILL);
    ASSERT_EQ(story.utility().wait(), -SIGKILL);
    ASSERT_THAT(settings.list(), SizeIs(1));
    story.forgetShortcuts();
    story.bind(another, target);
    story.startUtility();
    EXPECT_TRUE(waitUntil([&] { return settings.list().size() == 1; }));
    EXPECT_TRUE(story.passes(front, bound.keys()));
    EXPECT_TRUE(story.brings(target, front, another));
}

TEST_F(SettingsOnKWinTest, CombinationsOfTheDesktopStayItsOwn) {
    auto& other = story.install("Other");
    story.bind(altTab, other);
    story.startUtility();
    EXPECT_THAT(story.utilityTells(), testing::HasSubstr("refused"));
    ASSERT_TRUE(story.switchTo(front));
    story.strike(altTab);
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_EQ(other.starts(), 0);
}

class ListOnKWinTest : public testing::Test, protected KeyboardUserOnWayland {
protected:
    ListOnKWinTest() : KeyboardUserOnWayland(japaneseWords, std::make_unique<KWinStory>()) {}
    ShortcutSettings settings{story.session().bus().address()};

    bool isToldAt(const Accessible& window, std::string_view card) {
        return waitUntil([&] {
            return reader.description(reader.find(window, "panel", card)) ==
                   "この組み合わせはデスクトップから渡されないため、働きません";
        });
    }
};

TEST_F(ListOnKWinTest, AShortcutThatIsDeletedIsForgotten) {
    startUtility();
    ASSERT_THAT(settings.list(), SizeIs(1));
    const auto window = openManagement();
    press(window, words.remove);
    questionComes(words.removeTarget);
    story.keyboard.strike({"RTRN"});
    EXPECT_TRUE(waitUntil([&] { return settings.list().empty(); }));
}

TEST_F(ListOnKWinTest, ARefusedCombinationIsToldAtItsCard) {
    story.bind(altTab, front);
    startUtility();
    const auto window = openManagement();
    EXPECT_TRUE(isToldAt(window, "Front ⌥Tab"));
    EXPECT_EQ(reader.description(reader.find(window, "panel", "Target ⌃⌥L")), "");
    settings.change(settings.find(bringsTarget).value(), {});
    EXPECT_TRUE(isToldAt(window, "Target ⌃⌥L")) << "as is one that the user takes away";
}

TEST_F(ListOnKWinTest, AltTabIsRecorded) {
    startUtility();
    openManagement();
    beginToRecord();
    story.strike(altTab);
    ASSERT_TRUE(hasRecorded());
    story.keyboard.strike({"RTRN"});
    ASSERT_TRUE(isGone(editTitle));
    ASSERT_THAT(saved(), SizeIs(1));
    EXPECT_EQ(saved()[0].keyCode, 48);
    EXPECT_EQ(saved()[0].modifierFlags, option);
}

} // namespace
} // namespace hollowfernpike
