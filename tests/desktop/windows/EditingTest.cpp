#include "desktop/windows/WindowStoryTest.h"

namespace hollowfernpike {
namespace {

using namespace test;
using nlohmann::json;

using EditingTest = TwoShortcutsTest;

TEST_F(EditingTest, TheNewCombinationWorksAndTheOldOnePasses) {
    const auto editor = story.clickEdit(1);
    story.record(editor, third);
    story.strikeAndLeave(editor, "RTRN");
    EXPECT_TRUE(story.listBecomes(json::array({before[0], story.record(1, third, feldspar)})));
    EXPECT_EQ(story.list()[1]["id"], before[1]["id"]);
    EXPECT_TRUE(story.brings(feldspar, story.front, third));
    EXPECT_TRUE(story.isFree(second));
    EXPECT_TRUE(story.passes(story.front, second.keys()));
    EXPECT_TRUE(story.brings(quartz, story.front, first));
}

TEST_F(EditingTest, AnotherApplicationIsBroughtByTheSameCombination) {
    auto& obsidian = story.open("Obsidian");
    story.openManagement();
    const auto editor = story.clickEdit(0);
    story.choose(editor, obsidian.name());
    story.clickSave(editor);
    EXPECT_TRUE(story.listBecomes(json::array({story.record(0, first, obsidian), before[1]})));
    EXPECT_EQ(story.list()[0]["id"], before[0]["id"]);
    EXPECT_TRUE(story.brings(obsidian, story.front, first));
}

TEST_F(EditingTest, SavingUntouchedLeavesTheShortcutAsItWas) {
    for (const int card : {0, 1}) {
        story.clickSave(story.clickEdit(card));
        EXPECT_EQ(story.list(), before);
    }
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
}

TEST_F(EditingTest, CancellingKeepsTheOldCombination) {
    const auto editor = story.clickEdit(0);
    story.record(editor, third);
    story.strikeAndLeave(editor, "ESC");
    EXPECT_TRUE(story.passes(story.front, third.keys()));
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    EXPECT_EQ(story.list(), before);
}

TEST_F(EditingTest, AShortcutIsDeletedOnlyOnceTheQuestionIsAnsweredSo) {
    story.strikeAndLeave(story.clickDelete(0), "ESC");
    EXPECT_TRUE(story.brings(quartz, story.front, first));
    EXPECT_EQ(story.list(), before);
    story.openManagement();
    story.strikeAndLeave(story.clickDelete(0), "RTRN");
    EXPECT_TRUE(story.listBecomes(json::array({before[1]})));
    EXPECT_TRUE(story.isFree(first));
    EXPECT_TRUE(story.passes(story.front, first.keys()));
    EXPECT_TRUE(story.brings(feldspar, story.front, second));
    story.openManagement();
    story.strikeAndLeave(story.clickDelete(0), "RTRN");
    EXPECT_TRUE(story.listBecomes(json::array()));
    EXPECT_TRUE(story.isFree(second));
    EXPECT_TRUE(story.passes(story.front, second.keys()));
}

} // namespace
} // namespace hollowfernpike
