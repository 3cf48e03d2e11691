#include "desktop/editor/EditorStory.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const Combination fourth{41, shift | command};

/// Two editors: one for the existing shortcut and, in front of it, one for a second shortcut.
class TwoEditorsTest : public EditorStoryTest {
protected:
    const std::string_view adding = story.titles.adding;
    const std::string_view editing = story.titles.editing;
    xcb_window_t editor = XCB_NONE;
    xcb_window_t adder = XCB_NONE;

    void SetUp() override {
        EditorStoryTest::SetUp();
        editor = story.clickEdit(0);
        story.showsRecorder(editor); // or its own late request would put it before the next window
        story.openManagement();
        adder = story.clickAdd();
        story.choose(adder, story.front.name());
    }

    /// Brings it in front of the other.
    void raise(xcb_window_t window) {
        story.pager.activate(window);
        ASSERT_TRUE(story.isActive(window));
    }
};

TEST_F(TwoEditorsTest, EachSavesWhatItRecorded) {
    story.clickRecord(adding);
    EXPECT_TRUE(story.records(adding, third));
    EXPECT_TRUE(story.recorderShows(editing, shown(bound)));
    story.clickSave(adder);
    EXPECT_TRUE(story.saves({{quartz, bound}, {story.front, third}}));
    raise(editor);
    story.clickRecord(editing);
    EXPECT_TRUE(story.records(editing, fourth));
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, fourth}, {story.front, third}}));
    EXPECT_TRUE(story.brings(story.front, quartz, third));
    EXPECT_TRUE(story.brings(quartz, story.front, fourth));
}

TEST_F(TwoEditorsTest, BothRecordTheSameAndTheSecondToSaveIsRefused) {
    story.clickRecord(adding);
    EXPECT_TRUE(story.records(adding, third));
    raise(editor);
    story.clickRecord(editing);
    EXPECT_TRUE(story.records(editing, third));
    EXPECT_TRUE(story.listensNoMore());
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, third}}));
    const auto saved = story.list();
    raise(adder);
    story.clickSave(adder);
    EXPECT_EQ(story.list(), saved);
    EXPECT_TRUE(story.brings(quartz, story.front, third));
}

TEST_F(TwoEditorsTest, TheOtherInFrontEndsTheRecording) {
    story.clickRecord(adding);
    EXPECT_TRUE(story.listens());
    raise(editor);
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    story.clickRecord(editing);
    EXPECT_TRUE(story.records(editing, third));
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
}

} // namespace
} // namespace hollowfernpike
