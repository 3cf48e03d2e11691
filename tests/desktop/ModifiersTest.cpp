#include "desktop/Story.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint16_t letterL = 37;

class ModifiersTest : public testing::Test {
protected:
    Story story;
    Application& front = story.open("Front");
    Application& target = story.open("Target");
};

TEST_F(ModifiersTest, EachSetOfModifiersIsACombinationOfItsOwn) {
    for (std::size_t set = 1; set < modifierSets().size(); ++set) {
        story.bind({letterL, modifierSets()[set]}, set % 2 == 0 ? front : target);
    }
    story.startUtility();
    for (std::size_t set = 1; set < modifierSets().size(); ++set) {
        story.strike({letterL, modifierSets()[set]});
        ASSERT_TRUE(story.isInFront(set % 2 == 0 ? front : target)) << "set " << set;
    }
    ASSERT_TRUE(story.switchTo(front));
    ASSERT_TRUE(story.switchTo(target));
    EXPECT_TRUE(story.nobodySaw({letterL}));
}

TEST_F(ModifiersTest, OnlyTheBoundSetIsSwallowedOfSixteen) {
    const auto boundSet = control | shift;
    story.bind({letterL, boundSet}, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    std::vector<unsigned> expected;
    for (const auto set : modifierSets()) {
        if (set != boundSet) {
            story.strike({letterL, set});
            expected.push_back(Combination{letterL, set}.modifierState());
        }
    }
    ASSERT_TRUE(story.getsKeys(front));
    std::vector<unsigned> seen;
    for (const auto& key : front.keys()) {
        if (key.down && key.key == story.grabOf({letterL}).key) {
            seen.push_back(key.state);
        }
    }
    EXPECT_EQ(seen, expected);

    story.strike({letterL, boundSet});
    ASSERT_TRUE(story.isInFront(target));
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_EQ(front.downs(story.grabOf({letterL}).key), expected.size());
}

TEST_F(ModifiersTest, TheRightHandKeysCountAsWell) {
    story.bind({letterL, control | shift | option | command}, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, {"RCTL", "RTSH", "RALT", "RWIN", "AC09"}));
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "RTSH", "LALT", "RWIN", "AC09"}));
}

TEST_F(ModifiersTest, CapsLockDoesNotMatter) {
    story.bind({letterL, control | option}, target);
    story.startUtility();
    story.keyboard.strike({"CAPS"});
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AC09"}));
    story.keyboard.strike({"CAPS"});
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AC09"}));
}

TEST_F(ModifiersTest, NumLockDoesNotMatter) {
    story.bind({letterL, control | option}, target);
    story.bind({83, command}, target);
    story.startUtility();
    story.keyboard.strike({"NMLK"});
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AC09"}));
    EXPECT_TRUE(story.brings(target, front, {"LWIN", "KP1"}));
    story.keyboard.strike({"NMLK"});
    EXPECT_TRUE(story.brings(target, front, {"LWIN", "KP1"}));
}

TEST_F(ModifiersTest, BothLocksDoNotMatter) {
    story.bind({letterL, control | option}, target);
    story.bind({122}, target);
    story.startUtility();
    story.keyboard.strike({"CAPS"});
    story.keyboard.strike({"NMLK"});
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AC09"}));
    EXPECT_TRUE(story.brings(target, front, {"FK01"}));
}

} // namespace
} // namespace hollowfernpike
