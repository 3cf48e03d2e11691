#include "desktop/kde/KWinStory.h"
#include "desktop/resident/StatusMenu.h"
#include "desktop/wayland/KeyboardUserOnWayland.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;

class TaskBarOnKWinTest : public testing::Test, protected KeyboardUserOnWayland {
protected:
    TaskBarOnKWinTest() : KeyboardUserOnWayland(japaneseWords, std::make_unique<KWinStory>()) {}

    bool isInTaskBar(const std::string& title) {
        const auto windows = static_cast<KWinStory&>(story).kwin.windows();
        const auto found = std::ranges::find(windows, title, &KWinWindow::title);
        return found != windows.end() && !found->skipsTaskBar;
    }
};

TEST_F(TaskBarOnKWinTest, OurWindowsAreInItWhileThereIsNoStatusBar) {
    startUtility();
    ASSERT_TRUE(openWindow());
    EXPECT_TRUE(waitUntil([&] { return isInTaskBar(managementTitle); }));
}

TEST_F(TaskBarOnKWinTest, OurWindowsAreNotInItNorWhenTheyComeAgain) {
    StatusMenu menu{story.session()};
    menu.startHost();
    startUtility();
    ASSERT_TRUE(menu.showsItem()) << story.utilityTells();
    for (int time = 0; time < 2; ++time) {
        ASSERT_TRUE(openWindow());
        EXPECT_TRUE(hasWindow(managementTitle));
        EXPECT_FALSE(isInTaskBar(managementTitle)) << time;
        story.pager.closeTitled(managementTitle);
        ASSERT_TRUE(isGone(managementTitle));
    }
}

} // namespace
} // namespace hollowfernpike
