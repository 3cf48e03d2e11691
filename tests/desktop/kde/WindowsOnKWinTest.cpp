#include "desktop/kde/KWinStory.h"
#include "desktop/resident/StatusMenu.h"
#include "desktop/wayland/KeyboardUserOnWayland.h"

#include <algorithm>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using namespace test;

class WindowsOnKWinTest : public testing::Test {
protected:
    KWinStory story;

    pid_t processOf(const Application& application) { return application.copies().at(0); }

    /// The processes of the windows, front to back.
    std::vector<pid_t> order() {
        std::vector<pid_t> processes;
        for (const auto& window : story.kwin.windows()) {
            processes.insert(processes.begin(), window.process);
        }
        return processes;
    }
};

TEST_F(WindowsOnKWinTest, AMinimisedWindowComesBack) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    story.kwin.minimize(processOf(target));
    ASSERT_TRUE(story.kwin.windowOf(processOf(target))->isMinimized);
    EXPECT_TRUE(story.brings(target, front, bound));
    EXPECT_FALSE(story.kwin.windowOf(processOf(target))->isMinimized);
}

TEST_F(WindowsOnKWinTest, AllVisibleWindowsOfTheProcessComeForward) {
    auto& target = story.open("Target", {.options = {"--windows", "2"}});
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    const std::vector expected{processOf(target), processOf(target), processOf(front)};
    EXPECT_TRUE(waitUntil([&] { return order() == expected; }));
}

TEST_F(WindowsOnKWinTest, AMinimisedWindowOnAnotherDesktopComesBack) {
    auto& target = story.open("Target");
    auto& front = story.open("Front");
    story.bind(bound, target);
    story.startUtility();
    story.kwin.moveToDesktop(processOf(target), "desktop-2");
    story.kwin.minimize(processOf(target));
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(story.kwin.desktops().current(), "desktop-2");
}

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
