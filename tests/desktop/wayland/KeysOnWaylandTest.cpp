#include "desktop/wayland/OnWayland.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint64_t rareModifiers = control | shift | command;

/// A key is a place on the keyboard, whatever the layout writes there.
class KeysOnWaylandTest : public OnWayland, public testing::WithParamInterface<const char*> {
protected:
    KeysOnWaylandTest() : OnWayland(makeStory({.layouts = GetParam()})) {}

    /// Binds these keys to two applications in turn, strikes each and sees who comes.
    void eachBringsItsOwn(const std::vector<std::uint16_t>& keyCodes);

    Application& front = story.open("Front");
    Application& even = story.open("Even");
    Application& odd = story.open("Odd");
};

void KeysOnWaylandTest::eachBringsItsOwn(const std::vector<std::uint16_t>& keyCodes) {
    for (std::size_t index = 0; index < keyCodes.size(); ++index) {
        story.bind({keyCodes[index], rareModifiers}, index % 2 == 0 ? even : odd);
    }
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    for (std::size_t index = 0; index < keyCodes.size(); ++index) {
        story.strike({keyCodes[index], rareModifiers});
        ASSERT_TRUE(story.isInFront(index % 2 == 0 ? even : odd)) << "key code " << keyCodes[index];
    }
    for (const auto* application : {&front, &even, &odd}) {
        ASSERT_TRUE(story.switchTo(*application));
    }
    for (const auto keyCode : keyCodes) {
        EXPECT_TRUE(story.nobodySaw({keyCode, rareModifiers}));
    }
}

TEST_P(KeysOnWaylandTest, EachNamedKeyIsSwallowedAndBringsItsApplication) {
    std::vector<std::uint16_t> keyCodes;
    for (const auto& key : namedKeys()) {
        if (key.name != "AC11") { // getsKeys() strikes this one
            keyCodes.push_back(key.keyCode);
        }
    }
    ASSERT_EQ(keyCodes.size(), 79);
    eachBringsItsOwn(keyCodes);
}

TEST_P(KeysOnWaylandTest, TheApostropheKeyIsSwallowedAndBringsItsApplication) {
    const Combination apostrophe{39, rareModifiers};
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

TEST_P(KeysOnWaylandTest, EachKeyWithoutANameIsSwallowedAndBringsItsApplication) {
    std::vector<std::uint16_t> keyCodes;
    for (const auto& key : unnamedKeys()) {
        ASSERT_NE(story.keyboard.keycode(key.name), 0) << key.name;
        keyCodes.push_back(key.keyCode);
    }
    eachBringsItsOwn(keyCodes);
}

TEST_P(KeysOnWaylandTest, ABareKeyIsSwallowedButNotWithModifiers) {
    const Combination bare{96};
    story.bind(bare, even);
    story.startUtility();
    EXPECT_TRUE(story.brings(even, front, bare));
    EXPECT_TRUE(story.brings(even, odd, bare));
    EXPECT_TRUE(story.nobodySaw(bare));
    for (const auto modifiers : {shift, control, option, command, control | shift}) {
        EXPECT_TRUE(story.passes(front, Combination{96, modifiers}.keys()));
    }
}

INSTANTIATE_TEST_SUITE_P(Under, KeysOnWaylandTest, testing::Values("us", "de", "ru"),
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
