#include "desktop/editor/EditorStory.h"

#include "support/WaitUntil.h"

#include <array>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const Combination commandLetter{0, command};

// A, 1, keypad 5, F5, →: a lock changes what these keys do, or may be thought to.
constexpr std::array<std::uint16_t, 5> keysThatLocksChange{0, 18, 87, 96, 124};

class RecorderTest : public EditorStoryTest {
protected:
    const std::string_view adding = story.titles.adding;
    const std::string_view editing = story.titles.editing;

    /// An editor for a second shortcut, with the keys still to come.
    xcb_window_t openForKeys(const Application& application) {
        const auto editor = story.clickAdd();
        story.choose(editor, application.name());
        return editor;
    }

    bool canSave(std::string_view title) {
        return story.reader.isEnabled(story.part(title, "push button", "保存"));
    }
};

TEST_F(RecorderTest, ABareLetterAsksForAModifierUntilOneComes) {
    const auto editor = openForKeys(quartz);
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    story.clickRecord(adding);
    EXPECT_TRUE(story.recorderShows(adding, text::pressAKey));
    story.strike(bareLetter);
    EXPECT_TRUE(story.recorderShows(adding, text::includeAModifier));
    EXPECT_FALSE(canSave(adding));
    EXPECT_TRUE(story.records(adding, commandLetter));
    story.part(adding, "push button", "記録");
    EXPECT_TRUE(canSave(adding));
    EXPECT_TRUE(story.listensNoMore());
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, bound}, {quartz, commandLetter}}));
    EXPECT_TRUE(story.brings(quartz, story.front, commandLetter));
    EXPECT_TRUE(story.passes(story.front, bareLetter.keys()));
}

TEST_F(RecorderTest, APressWithAltGrAsksForAModifierAsNoTapWouldSwallowIt) {
    const auto editor = openForKeys(quartz);
    story.run({"setxkbmap", "-layout", "de"});
    story.clickRecord(adding);
    story.keyboard.strike({"RALT", "LCTL", "AB02"});
    EXPECT_TRUE(story.recorderShows(adding, text::includeAModifier));
    EXPECT_TRUE(story.records(adding, commandLetter));
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, bound}, {quartz, commandLetter}}));
}

TEST_F(RecorderTest, EscapeWithAModifierEndsTheRecordingAlone) {
    const auto editor = openForKeys(quartz);
    story.clickRecord(adding);
    story.keyboard.strike({"LCTL", "ESC"});
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_FALSE(canSave(adding));
    EXPECT_TRUE(story.isActive(editor));
}

TEST_F(RecorderTest, EscapeAloneEndsTheRecordingAndCancels) {
    const auto editor = story.clickEdit(0);
    story.clickRecord(editing);
    story.strikeAndLeave(editor, "ESC");
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_EQ(story.list(), before);
    EXPECT_TRUE(story.brings(quartz, story.front, bound));
}

TEST_F(RecorderTest, StopEndsTheRecordingAndWhatFollowsIsNotRecorded) {
    openForKeys(quartz);
    story.clickRecord(adding);
    story.clickStop(adding);
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    EXPECT_TRUE(story.listensNoMore());
    story.strike(third);
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    story.clickRecord(adding); // arrives after the keys
    story.clickStop(adding);
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    EXPECT_FALSE(canSave(adding));
}

TEST_F(RecorderTest, StopKeepsTheCombinationOfAnEditedShortcut) {
    const auto editor = story.clickEdit(0);
    story.clickRecord(editing);
    story.clickStop(editing);
    EXPECT_TRUE(story.recorderShows(editing, text::pressAKey));
    story.clickSave(editor);
    EXPECT_EQ(story.list(), before);
    EXPECT_TRUE(story.brings(quartz, story.front, bound));
}

TEST_F(RecorderTest, TheLastOfSeveralRecordingsCounts) {
    const auto editor = story.clickEdit(0);
    for (const auto& combination : {commandLetter, third}) {
        story.clickRecord(editing);
        EXPECT_TRUE(story.records(editing, combination));
    }
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, third}}));
    EXPECT_TRUE(story.brings(quartz, story.front, third));
    EXPECT_TRUE(story.passes(story.front, commandLetter.keys()));
}

// Whether it is recorded depends on which comes first, the press or the loss of the focus.
TEST_F(RecorderTest, ABoundCombinationBringsItsApplicationAndEndsTheRecording) {
    openForKeys(story.front);
    story.clickRecord(adding);
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(quartz));
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_EQ(quartz.downs(story.grabOf(bound).key), 0) << "it is swallowed as ever";
}

TEST_F(RecorderTest, TheOwnCombinationStaysAndStillBringsTheApplication) {
    const auto editor = story.clickEdit(0);
    story.clickRecord(editing);
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(quartz));
    EXPECT_TRUE(story.listensNoMore());
    story.pager.activate(editor);
    ASSERT_TRUE(story.isActive(editor));
    story.clickSave(editor);
    EXPECT_EQ(story.list(), before);
    EXPECT_TRUE(story.brings(quartz, story.front, bound));
}

TEST_F(RecorderTest, AnotherWindowInFrontEndsTheRecording) {
    const auto editor = openForKeys(quartz);
    story.clickRecord(adding);
    EXPECT_TRUE(story.listens());
    ASSERT_TRUE(story.switchTo(story.front));
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_TRUE(story.passes(story.front, third.keys()));
    story.pager.activate(editor);
    ASSERT_TRUE(story.isActive(editor));
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    EXPECT_FALSE(canSave(adding));
    story.clickRecord(adding);
    EXPECT_TRUE(story.records(adding, third));
}

// What a screen locker does that leaves the pointer to the user and tells nobody of itself.
TEST_F(RecorderTest, AProgramThatTakesTheKeyboardEndsTheRecording) {
    openForKeys(quartz);
    story.clickRecord(adding);
    EXPECT_TRUE(story.listens());
    XClient locker{story.desktop.display()};
    ASSERT_TRUE(locker.grabKeyboard());
    for (const char* letter : {"AC01", "AC02", "AC03"}) {
        story.keyboard.strike({"LFSH", letter}); // the capitals of a password
    }
    EXPECT_TRUE(story.listensNoMore());
    locker.giveInputBack();
    EXPECT_TRUE(story.recorderShows(adding, text::clickToRecord));
    EXPECT_FALSE(canSave(adding));
}

TEST_F(RecorderTest, LocksDoNotCount) {
    for (const char* lock : {"CAPS", "NMLK"}) {
        story.keyboard.strike({lock});
    }
    const auto editor = story.clickEdit(0);
    for (const auto modifier : {control, option, shift, command}) {
        for (const auto keyCode : keysThatLocksChange) {
            story.clickRecord(editing);
            EXPECT_TRUE(story.records(editing, {keyCode, modifier}));
        }
    }
    story.clickRecord(editing);
    EXPECT_TRUE(story.records(editing, third));
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, third}}));
    EXPECT_TRUE(story.brings(quartz, story.front, third));
    for (const char* lock : {"CAPS", "NMLK"}) {
        story.keyboard.strike({lock});
    }
    EXPECT_TRUE(story.brings(quartz, story.front, third));
}

TEST_F(RecorderTest, ALockIsNoModifier) {
    openForKeys(quartz);
    story.clickRecord(adding);
    story.keyboard.strike({"CAPS"});
    story.strike(bareLetter);
    EXPECT_TRUE(story.recorderShows(adding, text::includeAModifier));
    EXPECT_FALSE(canSave(adding));
}

TEST_F(RecorderTest, AWayToAnotherWorkspaceEndsTheRecording) {
    const Combination toSecondWorkspace{120, command};
    const auto editor = story.clickEdit(0);
    story.clickRecord(editing);
    story.strike(toSecondWorkspace);
    EXPECT_TRUE(waitUntil([&] { return story.pager.currentWorkspace() == 1; }));
    EXPECT_TRUE(story.listensNoMore());
    story.keyboard.strike({"LWIN", "FK01"});
    ASSERT_TRUE(waitUntil([&] { return story.pager.currentWorkspace() == 0; }));
    ASSERT_TRUE(story.isActive(editor));
    story.clickRecord(editing);
    EXPECT_TRUE(story.records(editing, third));
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, third}}));
}

TEST_F(RecorderTest, AWindowClosedInMidRecordingListensNoMore) {
    const auto editor = openForKeys(quartz);
    story.clickRecord(adding);
    EXPECT_TRUE(story.listens());
    story.pager.close(editor);
    story.goes(editor);
    EXPECT_FALSE(story.utility().hasEnded());
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_EQ(story.list(), before);
    EXPECT_TRUE(story.brings(quartz, story.front, bound));
    story.openManagement();
    story.add(story.front, third);
    EXPECT_TRUE(story.brings(story.front, quartz, third));
}

TEST_F(RecorderTest, TheWindowManagersKeyForClosingEndsTheRecordingWithTheWindow) {
    const Combination closing{118, option};
    const auto editor = story.clickEdit(0);
    story.clickRecord(editing);
    EXPECT_TRUE(story.listens());
    story.strike(closing);
    story.goes(editor);
    EXPECT_TRUE(story.listensNoMore());
    EXPECT_EQ(story.list(), before);
    EXPECT_TRUE(story.brings(quartz, story.front, bound));
}

} // namespace
} // namespace hollowfernpike
