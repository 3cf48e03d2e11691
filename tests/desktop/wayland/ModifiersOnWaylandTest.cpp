#include "desktop/wayland/OnWayland.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint16_t keyJ = 38;

class ModifiersOnWaylandTest : public OnWayland {
protected:
    Application& front = story.open("Front");
    Application& target = story.open("Target");
};

TEST_F(ModifiersOnWaylandTest, EachSetOfModifiersIsACombinationOfItsOwn) {
    for (std::size_t set = 1; set < modifierSets().size(); ++set) {
        story.bind({keyJ, modifierSets()[set]}, set % 2 == 0 ? front : target);
    }
    story.startUtility();
    for (std::size_t set = 1; set < modifierSets().size(); ++set) {
        story.strike({keyJ, modifierSets()[set]});
        ASSERT_TRUE(story.isInFront(set % 2 == 0 ? front : target)) << "set " << set;
    }
    ASSERT_TRUE(story.switchTo(front));
    ASSERT_TRUE(story.switchTo(target));
    EXPECT_TRUE(story.nobodySaw({keyJ}));
}

TEST_F(ModifiersOnWaylandTest, OnlyTheBoundSetIsSwallowedOfSixteen) {
    const auto boundSet = control | shift;
    story.bind({keyJ, boundSet}, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    std::vector<unsigned> expected;
    for (const auto set : modifierSets()) {
        if (set != boundSet) {
            story.strike({keyJ, set});
            expected.push_back(Combination{keyJ, set}.modifierState());
        }
    }
    ASSERT_TRUE(story.getsKeys(front));
    std::vector<unsigned> seen;
    for (const auto& key : front.keys()) {
        if (key.down && key.key == story.keycode({keyJ})) {
            seen.push_back(key.state);
        }
    }
    EXPECT_EQ(seen, expected);
    EXPECT_TRUE(story.brings(target, front, {keyJ, boundSet}));
}

TEST_F(ModifiersOnWaylandTest, TheRightHandKeysCountAsWell) {
    story.bind({keyJ, control | shift | option | command}, target);
    story.bind({keyJ, control}, target);
    story.bind({keyJ, shift}, target);
    story.bind({keyJ, option}, target);
    story.bind({keyJ, command}, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, {"RCTL", "RTSH", "RALT", "RWIN", "AC07"}));
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "RTSH", "LALT", "RWIN", "AC07"}));
    for (const auto* modifier : {"RCTL", "RTSH", "RALT", "RWIN"}) {
        EXPECT_TRUE(story.brings(target, front, {modifier, "AC07"})) << modifier;
    }
}

TEST_F(ModifiersOnWaylandTest, TheThirdLevelKeyIsNotOption) {
    story.use({.layouts = "de"});
    story.bind({keyJ, option}, target);
    story.bind({keyJ, control | option}, target);
    story.startUtility();
    EXPECT_TRUE(story.passes(front, {"RALT", "AC07"}));
    EXPECT_TRUE(story.passes(front, {"LCTL", "RALT", "AC07"}));
    EXPECT_TRUE(story.passes(front, {"LCTL", "LALT", "RALT", "AC07"}));
    EXPECT_TRUE(story.brings(target, front, {"LALT", "AC07"}));
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AC07"}));
}

/// The states of Caps Lock and Num Lock, by the keys to strike.
class LocksOnWaylandTest : public OnWayland,
                           public testing::WithParamInterface<std::vector<std::string>> {
protected:
    Application& front = story.open("Front");
    Application& target = story.open("Target");

    const std::vector<std::string> keypad{"KP0",  "KP1",  "KP2",  "KP3",  "KP4",
                                          "KP5",  "KP6",  "KP7",  "KP8",  "KP9",
                                          "KPDL", "KPMU", "KPAD", "KPDV", "KPSU"};

    /// Goes to the state of the locks that the test is for, or back.
    void lock() {
        for (const auto& key : GetParam()) {
            story.keyboard.strike({key});
        }
    }
};

TEST_P(LocksOnWaylandTest, DoNotMatterAndLeaveTheKeypadInItsPlace) {
    story.bind({keyJ, control | option}, target);
    story.bind({122}, target);
    for (const auto& keys : {namedKeys(), unnamedKeys()}) {
        for (const auto& key : keys) {
            if (std::ranges::find(keypad, key.name) != keypad.end()) {
                story.bind({key.keyCode, option | shift}, target);
                story.bind({key.keyCode, control | shift}, target);
            }
        }
    }
    story.startUtility();
    lock();
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AC07"}));
    EXPECT_TRUE(story.brings(target, front, {"FK01"}));
    EXPECT_TRUE(story.passes(front, {"LCTL", "AC07"}));
    EXPECT_TRUE(story.passes(front, {"LFSH", "FK01"}));
    EXPECT_TRUE(story.passes(front, {"KP1"}));
    for (const auto& key : keypad) {
        EXPECT_TRUE(story.brings(target, front, {"LALT", "LFSH", key})) << key;
        EXPECT_TRUE(story.brings(target, front, {"LCTL", "LFSH", key})) << key;
    }
    lock();
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AC07"}));
}

INSTANTIATE_TEST_SUITE_P(With, LocksOnWaylandTest,
                         testing::Values(std::vector<std::string>{},
                                         std::vector<std::string>{"CAPS"},
                                         std::vector<std::string>{"NMLK"},
                                         std::vector<std::string>{"CAPS", "NMLK"}),
                         [](const auto& locks) {
                             std::string name = locks.param.empty() ? "none" : "";
                             for (const auto& lock : locks.param) {
                                 name += lock;
                             }
                             return name;
                         });

} // namespace
} // namespace hollowfernpike
