#include "desktop/wayland/OnWayland.h"

#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// The keypad has symbols of other keys, so it is bound by itself.
bool isOnKeypad(const KeyPosition& key) {
    return key.name.starts_with("KP");
}

/// A key is a place on the keyboard, whatever the layout writes there.
class KeysOnWaylandTest : public OnWayland, public testing::WithParamInterface<const char*> {
protected:
    KeysOnWaylandTest() : OnWayland(makeStory({.layouts = GetParam()})) {}

    /// Those of the keys, on the keypad or off it, that can be bound here.
    std::vector<Combination> bindable(std::span<const KeyPosition> keys, bool onKeypad) const;

    /// Binds these combinations alone, to two applications in turn, strikes each and sees who
    /// comes.
    void eachBringsItsOwn(const std::vector<Combination>& combinations);

    Application& front = story.open("Front");
    Application& even = story.open("Even");
    Application& odd = story.open("Odd");
};

std::vector<Combination> KeysOnWaylandTest::bindable(std::span<const KeyPosition> keys,
                                                     bool onKeypad) const {
    const auto& session = story.session();
    std::vector<Combination> result;
    for (const auto& key : keys) {
        const bool isFence = key.name == "AC11"; // getsKeys() strikes this one
        const bool isSecondBackslash = key.name == "AB11" && GetParam() == std::string{"jp"};
        if (isOnKeypad(key) == onKeypad && !isFence &&
            (!session.bindsSymbols() || (story.keyboard.writes(key.name) && !isSecondBackslash))) {
            result.push_back(session.rare(key.keyCode));
        }
    }
    return result;
}

void KeysOnWaylandTest::eachBringsItsOwn(const std::vector<Combination>& combinations) {
    story.forgetShortcuts();
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        story.bind(combinations[index], index % 2 == 0 ? even : odd);
    }
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    for (std::size_t index = 0; index < combinations.size(); ++index) {
        story.strike(combinations[index]);
        ASSERT_TRUE(story.isInFront(index % 2 == 0 ? even : odd)) << combinations[index].keyName();
    }
    for (const auto* application : {&front, &even, &odd}) {
        ASSERT_TRUE(story.switchTo(*application));
    }
    for (const auto& combination : combinations) {
        EXPECT_TRUE(story.nobodySaw(combination));
    }
}

TEST_P(KeysOnWaylandTest, EachIsSwallowedAndBringsItsApplication) {
    const bool bindsSymbols = story.session().bindsSymbols();
    for (const auto& key : unnamedKeys()) {
        ASSERT_NE(story.keyboard.keycode(key.name), 0) << key.name;
    }
    const auto named = bindable(namedKeys(), false);
    const auto namedOfKeypad = bindable(namedKeys(), true);
    const auto unnamed = bindable(unnamedKeys(), false);
    const auto unnamedOfKeypad = bindable(unnamedKeys(), true);
    constexpr std::size_t deadKeys = 1; // of a German keyboard
    ASSERT_EQ(named.size(), bindsSymbols && GetParam() == std::string{"de"} ? 69 - deadKeys : 69);
    ASSERT_EQ(namedOfKeypad.size(), 10);
    ASSERT_GE(unnamed.size(), bindsSymbols ? 20 : 26);
    ASSERT_EQ(unnamedOfKeypad.size(), 7);
    for (const auto& keys : {named, namedOfKeypad, unnamed, unnamedOfKeypad}) {
        SCOPED_TRACE("from " + keys.front().keyName() + " on");
        ASSERT_NO_FATAL_FAILURE(eachBringsItsOwn(keys));
    }
}

TEST_P(KeysOnWaylandTest, TheApostropheKeyIsSwallowedAndBringsItsApplication) {
    const auto apostrophe = story.session().rare(39);
    story.bind(apostrophe, even);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    const auto before = front.downs(story.keycode(apostrophe));
    story.strike(apostrophe);
    EXPECT_TRUE(story.isInFront(even));
    story.pager.focus(front.copies().at(0));
    ASSERT_TRUE(story.isInFront(front));
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_EQ(front.downs(story.keycode(apostrophe)), before + 1) << "the fence alone";
}

TEST_P(KeysOnWaylandTest, ABareKeyIsSwallowedButNotWithModifiers) {
    const Combination bare{103};
    story.bind(bare, even);
    story.startUtility();
    EXPECT_TRUE(story.brings(even, front, bare));
    EXPECT_TRUE(story.brings(even, odd, bare));
    EXPECT_TRUE(story.nobodySaw(bare));
    for (const auto modifiers : {shift, control, option, command, control | shift}) {
        EXPECT_TRUE(story.passes(front, Combination{103, modifiers}.keys()));
    }
}

INSTANTIATE_TEST_SUITE_P(Under, KeysOnWaylandTest, testing::Values("us", "de", "ru", "jp"),
                         [](const auto& layout) { return std::string{layout.param}; });

class LayoutsOnWaylandTest : public OnWayland {
protected:
    Application& front = story.open("Front");
    Application& target = story.open("Target");
};

TEST_F(LayoutsOnWaylandTest, ALayoutSwitchedWhileRunningKeepsEveryKeyInItsPlace) {
    story.bind({12, control | shift}, target);
    story.startUtility();
    for (const auto* layouts : {"fr", "ru", "us(dvorak)", "us"}) {
        story.use({.layouts = layouts});
        EXPECT_TRUE(story.brings(target, front, {"LCTL", "LFSH", "AD01"})) << layouts;
        EXPECT_TRUE(story.passes(front, {"LCTL", "LFSH", "AC01"})) << layouts;
    }
}

TEST_F(LayoutsOnWaylandTest, AKeyWhoseLetterMovesToAnotherKeepsItsPlace) {
    story.use({.layouts = "us,de"});
    story.bind({16, control | option}, target);
    story.startUtility();
    for (const auto group : {1U, 0U}) {
        story.lockGroup(group);
        EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AD06"})) << group;
        EXPECT_TRUE(story.passes(front, {"LCTL", "LALT", "AB01"})) << group;
    }
}

TEST_F(LayoutsOnWaylandTest, TheSecondLayoutOfTwoKeepsEveryKeyInItsPlace) {
    story.use({.layouts = "us,ru"});
    story.bind({12, control | shift}, target);
    story.startUtility();
    for (const auto group : {1U, 0U}) {
        story.lockGroup(group);
        EXPECT_TRUE(story.brings(target, front, {"LCTL", "LFSH", "AD01"})) << group;
        EXPECT_TRUE(story.passes(front, {"LCTL", "LFSH", "AC01"})) << group;
    }
}

} // namespace
} // namespace hollowfernpike
