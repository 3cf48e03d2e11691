#include "desktop/resident/StatusMenu.h"
#include "desktop/wayland/KeyboardUserOnWayland.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class StatusMenuOnWaylandTest : public testing::Test, protected KeyboardUserOnWayland {
protected:
    StatusMenu menu{story.session()};

    void SetUp() override {
        menu.startHost();
        startUtility();
        ASSERT_TRUE(menu.showsItem()) << story.utilityTells();
    }
};

TEST_F(StatusMenuOnWaylandTest, ItOpensTheWindowAndBringsItForward) {
    menu.choose("ショートカット管理");
    managementComes();
    ASSERT_TRUE(story.switchTo(front));
    menu.choose("ショートカット管理");
    managementComes();
    EXPECT_EQ(story.pager.windows().size(), 2);
}

TEST_F(StatusMenuOnWaylandTest, ItSwitchesTheLanguage) {
    menu.choose("English");
    ASSERT_TRUE(menu.becomes("English", true));
    menu.choose("Manage Shortcuts");
    EXPECT_TRUE(isFocused("Hollowfernpike - Manage Shortcuts"));
}

TEST_F(StatusMenuOnWaylandTest, QuitEndsItAndGivesTheCombinationsBack) {
    menu.choose("終了");
    EXPECT_EQ(story.utility().wait(), 0) << story.utilityTells();
    EXPECT_TRUE(story.passes(front, bound.keys()));
}

} // namespace
} // namespace hollowfernpike
