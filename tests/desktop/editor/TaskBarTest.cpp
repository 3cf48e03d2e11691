#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// A panel shows the status item, so task bars list the utility's windows only while it is an
/// application like any other. Nothing has been recorded yet.
class TaskBarTest : public testing::Test {
protected:
    EditorStory story;
    StatusMenu menu{story.desktop};
    Application& quartz = story.open("Quartz");

    void SetUp() override {
        menu.startHost();
        story.bind({37, control | option}, quartz);
        story.writeShortcuts();
        story.start();
        ASSERT_TRUE(menu.showsItem());
        story.rememberConnections();
        EXPECT_TRUE(becomesListed(story.openManagement(), false));
    }

    bool becomesListed(xcb_window_t window, bool isListed) {
        return waitUntil([&] { return story.pager.isInTaskBar(window) == isListed; });
    }
};

TEST_F(TaskBarTest, ListsTheWindowsFromTheFirstRecordingOn) {
    const auto editor = story.clickEdit(0);
    EXPECT_TRUE(becomesListed(editor, false));
    story.clickRecord(story.titles.editing);
    EXPECT_TRUE(becomesListed(editor, true));
    EXPECT_TRUE(story.records(story.titles.editing, third));
    EXPECT_TRUE(story.listensNoMore());
    story.clickSave(editor); // served after all that the end of the recording does
    EXPECT_TRUE(story.saves({{quartz, third}}));
    EXPECT_TRUE(story.pager.isInTaskBar(story.managementComes()));
}

TEST_F(TaskBarTest, ListsThemNoLongerAfterARecordingThatEndsWithoutAnyWindow) {
    const auto editor = story.clickEdit(0);
    const auto management = story.openManagement();
    story.pager.close(management);
    story.goes(management);
    story.pager.activate(editor);
    ASSERT_TRUE(story.isActive(editor));
    story.clickRecord(story.titles.editing);
    EXPECT_TRUE(becomesListed(editor, true));
    story.pager.close(editor);
    story.goes(editor);
    story.strike(third);
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_FALSE(story.pager.isInTaskBar(story.openManagement()));
}

} // namespace
} // namespace hollowfernpike
