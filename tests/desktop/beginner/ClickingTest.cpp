#include "desktop/editor/EditorStory.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// What people click on because it looks as if they could.
using ClickingTest = EditorStoryTest;

TEST_F(ClickingTest, ClickToRecordRecords) {
    const auto editor = story.clickAdd();
    story.choose(editor, story.front.name());
    story.clickOn(story.part(story.titles.adding, "label", text::clickToRecord));
    ASSERT_TRUE(story.recorderShows(story.titles.adding, text::pressAKey));
    EXPECT_TRUE(story.records(story.titles.adding, third));
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, bound}, {story.front, third}}));
}

TEST_F(ClickingTest, AClickOnTheCombinationRecordsAnotherOneAndASecondGoesOnRecording) {
    const auto editor = story.clickEdit(0);
    story.clickOn(story.part(story.titles.editing, "label", shown(bound)));
    const auto prompt = story.part(story.titles.editing, "label", text::pressAKey);
    story.clickOn(prompt);
    EXPECT_TRUE(story.records(story.titles.editing, third));
    story.strikeAndLeave(editor, "RTRN");
    EXPECT_TRUE(story.saves({{quartz, third}}));
}

} // namespace
} // namespace hollowfernpike
