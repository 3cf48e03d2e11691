#include "desktop/editor/EditorStory.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// What people click on because it looks as if they could.
using ClickingTest = EditorStoryTest;

class CardKeysTest : public EditorStoryTest {
protected:
    /// Gives the one card the focus.
    void focusCard() {
        story.clickOn(story.reader.find("label", "Quartz"));
        const auto card = story.reader.find("panel", "Quartz " + shown(bound));
        ASSERT_TRUE(waitUntil([&] { return story.reader.isFocused(card); }));
    }
};

TEST_F(CardKeysTest, ReturnEdits) {
    focusCard();
    story.keyboard.strike({"RTRN"});
    story.strikeAndLeave(story.comes(story.titles.editing), "ESC");
}

TEST_F(CardKeysTest, DeleteAsksAndDeletes) {
    focusCard();
    story.keyboard.strike({"DELE"});
    story.comes(story.titles.alert);
    story.reader.find("alert message", "「Quartz」のショートカットを削除しますか？");
    story.keyboard.strike({"RTRN"});
    EXPECT_TRUE(story.listBecomes(nlohmann::json::array()));
}

TEST_F(CardKeysTest, ReturnPressesTheButtonsOfACard) {
    focusCard();
    story.keyboard.strike({"TAB"});
    story.keyboard.strike({"RTRN"});
    story.strikeAndLeave(story.comes(story.titles.editing), "ESC");
    story.openManagement();
    story.keyboard.strike({"TAB"});
    story.keyboard.strike({"RTRN"});
    story.strikeAndLeave(story.comes(story.titles.alert), "ESC");
    EXPECT_EQ(story.list(), before);
}

TEST_F(CardKeysTest, ReturnPressesTheButtonThatAdds) {
    const auto add = story.reader.find("push button", "+ ショートカット追加");
    ASSERT_TRUE(story.reader.isFocused(add)) << "at first";
    story.keyboard.strike({"RTRN"});
    story.comes(story.titles.adding);
}

TEST_F(ClickingTest, ClickToRecordRecords) {
    const auto editor = story.clickAdd();
    story.choose(editor, story.front.name());
    story.clickOn(story.part(story.titles.adding, "label", text::clickToRecord));
    ASSERT_TRUE(story.recorderShows(story.titles.adding, text::pressAKey));
    EXPECT_TRUE(story.records(story.titles.adding, third));
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, bound}, {story.front, third}}));
}

// A press reaches the recorder past the toolkit, so it may overtake a click that changes nothing.
// The click on the button, which the toolkit hands out after the other two, tells them apart.
TEST_F(ClickingTest, AClickOnTheCombinationRecordsAnotherOneAndASecondDoesNotStopThat) {
    const auto editor = story.clickEdit(0);
    story.clickOn(story.part(story.titles.editing, "label", shown(bound)));
    story.clickOn(story.part(story.titles.editing, "label", text::pressAKey));
    story.clickStop(story.titles.editing);
    story.clickRecord(story.titles.editing);
    EXPECT_TRUE(story.records(story.titles.editing, third));
    story.strikeAndLeave(editor, "RTRN");
    EXPECT_TRUE(story.saves({{quartz, third}}));
}

} // namespace
} // namespace hollowfernpike
