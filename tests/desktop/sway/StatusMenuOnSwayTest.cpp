#include "desktop/resident/StatusMenu.h"
#include "desktop/sway/KeyboardUserOnSway.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class StatusMenuOnSwayTest : public testing::Test, protected KeyboardUserOnSway {
protected:
    StatusMenu menu{story.desktop};

    void SetUp() override {
        menu.startHost();
        startUtility();
        ASSERT_TRUE(menu.showsItem()) << story.utilityTells();
    }
};

TEST_F(StatusMenuOnSwayTest, ItOpensTheWindowAndBringsItForward) {
    menu.choose("ショートカット管理");
    managementComes();
    ASSERT_TRUE(story.switchTo(front));
    menu.choose("ショートカット管理");
    managementComes();
    EXPECT_EQ(story.pager.windows().size(), 2);
}

TEST_F(StatusMenuOnSwayTest, ItSwitchesTheLanguage) {
    menu.choose("English");
    ASSERT_TRUE(menu.becomes("English", true));
    menu.choose("Manage Shortcuts");
    EXPECT_TRUE(isFocused("Hollowfernpike - Manage Shortcuts"));
}

TEST_F(StatusMenuOnSwayTest, QuitEndsItAndGivesTheCombinationsBack) {
    menu.choose("終了");
    EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

} // namespace
} // namespace hollowfernpike
