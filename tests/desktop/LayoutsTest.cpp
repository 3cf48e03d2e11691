#include "desktop/Story.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint16_t letterQ = 12;
const Combination boundLetter{letterQ, control | shift};

class LayoutsTest : public testing::Test {
protected:
    Story story;
    Application& front = story.open("Front");
    Application& target = story.open("Target");
};

TEST_F(LayoutsTest, TheSecondLayoutOfTwoKeepsEveryKeyInItsPlace) {
    story.run({"setxkbmap", "-layout", "us,ru"});
    story.bind(boundLetter, target);
    story.startUtility();
    XClient switcher(story.desktop.display());
    switcher.lockLayoutGroup(1);
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LFSH", "AD01"}));
    switcher.lockLayoutGroup(0);
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LFSH", "AD01"}));
}

TEST_F(LayoutsTest, ALayoutSwitchedWhileRunningKeepsEveryKeyInItsPlace) {
    story.bind(boundLetter, target);
    story.startUtility();
    for (const std::vector<std::string>& layout :
         {std::vector<std::string>{"fr"}, {"ru"}, {"us", "-variant", "dvorak"}, {"us"}}) {
        std::vector<std::string> command{"setxkbmap", "-layout"};
        command.insert(command.end(), layout.begin(), layout.end());
        story.run(command);
        EXPECT_TRUE(story.brings(target, front, {"LCTL", "LFSH", "AD01"}));
        EXPECT_TRUE(story.passes(front, {"LCTL", "LFSH", "AC01"}));
    }
}

TEST_F(LayoutsTest, AnotherModelOfKeyboardKeepsEveryKeyInItsPlace) {
    story.bind(boundLetter, target);
    story.startUtility();
    story.run({"setxkbmap", "-model", "jp106", "-layout", "jp"});
    ASSERT_TRUE(story.areLive());
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LFSH", "AD01"}));
}

TEST_F(LayoutsTest, CommandFollowsSuperToAnotherModifier) {
    const Combination withCommand{letterQ, command};
    story.bind(withCommand, target);
    story.startUtility();
    story.run({"xmodmap", "-e", "remove mod4 = Super_L Super_R Hyper_L", "-e",
               "add mod3 = Super_L Super_R"});
    ASSERT_TRUE(story.isLive({story.grabOf(withCommand).key, XCB_MOD_MASK_3}));
    EXPECT_TRUE(story.brings(target, front, {"LWIN", "AD01"}));
    EXPECT_TRUE(story.brings(target, front, {"RWIN", "AD01"}));
}

TEST_F(LayoutsTest, OptionAndCommandFollowTheirKeysWhenTheyAreSwapped) {
    story.bind({letterQ, option | control}, target);
    story.startUtility();
    story.run({"setxkbmap", "-option", "altwin:swap_alt_win"});
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LWIN", "AD01"}));
    story.run({"setxkbmap", "-option", ""});
    EXPECT_TRUE(story.brings(target, front, {"LCTL", "LALT", "AD01"}));
}

TEST_F(LayoutsTest, CapsLockWorksAsControlWhereItIsMadeOne) {
    story.run({"setxkbmap", "-option", "ctrl:nocaps"});
    story.bind({letterQ, control | option}, target);
    story.startUtility();
    EXPECT_TRUE(story.brings(target, front, {"CAPS", "LALT", "AD01"}));
}

TEST_F(LayoutsTest, TheThirdLevelKeyIsNotOption) {
    story.run({"setxkbmap", "-layout", "de"});
    story.bind({letterQ, option}, target);
    story.startUtility();
    EXPECT_TRUE(story.passes(front, {"RALT", "AD01"}));
    story.keyboard.strike({"LALT", "AD01"});
    EXPECT_TRUE(story.isInFront(target));
}

} // namespace
} // namespace hollowfernpike
