#include "desktop/Story.h"
#include "desktop/windows/WindowUser.h"
#include "support/FolderLog.h"
#include "support/WaitUntil.h"
#include "support/WindowManagers.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// The utility is started by its desktop entry on a display that does not trust it.
class PermissionTest : public testing::TestWithParam<const char*> {
protected:
    Story story{GetParam()};
    WindowUser user{story};
    std::unique_ptr<ChildProcess> utility =
        story.desktop.start({HFP_PROGRAM, "--action", "openMainWindow"},
                            {{"XAUTHORITY", story.authority("authority", "untrusted").string()}});

    /// With or without the keys.
    void windowComes(std::string_view title) {
        user.require([&] { return story.pager.windowCalled(title) != XCB_NONE; },
                     std::string(title) + " does not come");
    }

    /// As a task bar does, from behind the question. At first, window managers differ in which
    /// window gets the keys.
    xcb_window_t bringManagementForward() {
        for (const auto title : {user.titles.alert, user.titles.management}) {
            story.bringForward([&] { return std::vector{story.pager.windowCalled(title)}; });
        }
        return user.managementComes();
    }

    /// Whether, after some waiting, the question covers the management window.
    bool promptIsInFrontOfManagement() {
        return waitUntil([this] {
            const auto windows = story.pager.stacking();
            const auto place = [&](std::string_view title) {
                return std::ranges::find(windows, story.pager.windowCalled(title));
            };
            return place(user.titles.management) < place(user.titles.alert) &&
                   place(user.titles.alert) != windows.end();
        });
    }

    /// Whether, after some waiting, nothing of ours covers the question.
    bool promptIsOnTop() {
        return waitUntil([this] {
            const auto windows = story.pager.stacking();
            return !windows.empty() && story.pager.titleOf(windows.back()) == user.titles.alert;
        });
    }
};

INSTANTIATE_TEST_SUITE_P(Each, PermissionTest, windowManagers(), windowManagerName);

TEST_P(PermissionTest, IsAskedForInFrontOfTheWindowsOfTheProgram) {
    windowComes(user.titles.management);
    EXPECT_TRUE(promptIsOnTop());
    bringManagementForward();
    EXPECT_TRUE(promptIsOnTop());
    const auto editor = user.clickAdd();
    EXPECT_TRUE(waitUntil([&] { return story.pager.stacking().back() == editor; }));
    EXPECT_EQ(story.pager.focusedWindow(), editor);
    EXPECT_TRUE(promptIsInFrontOfManagement());
}

TEST_P(PermissionTest, DoesNotCoverADialogThatHasToBeAnsweredFirst) {
    windowComes(user.titles.alert);
    story.run({HFP_PROGRAM, "--action", "exportShortcuts"});
    const auto dialog = user.comes(user.titles.exporting);
    EXPECT_TRUE(waitUntil([&] { return story.pager.stacking().back() == dialog; }));
}

TEST_P(PermissionTest, IsAskedForAgainWithoutTakingTheKeys) {
    windowComes(user.titles.alert);
    const auto window = bringManagementForward();
    story.pager.close(story.pager.windowCalled(user.titles.alert));
    user.require([this] { return story.pager.windowCalled(user.titles.alert) == XCB_NONE; },
                 "the question does not go");
    ASSERT_TRUE(story.isActive(window));
    windowComes(user.titles.alert);
    EXPECT_TRUE(promptIsOnTop());
    EXPECT_EQ(story.pager.focusedWindow(), window);
}

TEST_P(PermissionTest, LeavesTheFrontAndTheKeysToOthersWhileItIsOpen) {
    windowComes(user.titles.alert);
    bringManagementForward();
    const auto editor = user.clickAdd();
    // Each time that the program tries again, it connects anew. The second one tells that the first
    // has been answered.
    FolderLog tries(story.desktop.home());
    user.require([&] { return tries.openings("authority") >= 2; }, "it does not try again");
    EXPECT_EQ(story.pager.stacking().back(), editor);
    EXPECT_EQ(story.pager.activeWindow(), editor);
    EXPECT_EQ(story.pager.focusedWindow(), editor);
}

} // namespace
} // namespace hollowfernpike
