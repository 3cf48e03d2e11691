#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"

namespace hollowfernpike {
namespace {

using namespace test;

/// Keys that the short form has no name for.
class KeyWordsTest : public testing::Test {
protected:
    const Combination pageDown{121, control | command};

    EditorStory story;
    StatusMenu menu{story.desktop};

    void SetUp() override {
        story.bind(pageDown, story.install("Many"));
        menu.startHost();
        story.startUtility();
        ASSERT_TRUE(menu.showsItem());
        story.openManagement();
    }

    std::string wordsOf(const std::string& shortForm) {
        return story.reader.description(story.reader.find("label", shortForm));
    }
};

TEST_F(KeyWordsTest, AreToldOnCardsAndInTheRecorder) {
    EXPECT_EQ(wordsOf(" ⌃⌘Key(121) "), "Control + Super + Page Down");
    story.clickEdit(0);
    EXPECT_EQ(wordsOf("⌃⌘Key(121)"), "Control + Super + Page Down");
}

TEST_F(KeyWordsTest, AreShownOnHover) {
    const auto badge = story.reader.middleOf(story.reader.find("label", " ⌃⌘Key(121) "));
    story.mouse.moveTo(badge.x, badge.y);
    story.reader.find("tool tip", "Control + Super + Page Down");
}

TEST_F(KeyWordsTest, ExplainTheSymbolsWhereTheRecorderAsksForThem) {
    const auto editor = story.clickEdit(0);
    story.startRecording(editor);
    story.strike(bareLetter);
    EXPECT_EQ(wordsOf(std::string{text::includeAModifier}), "⌃ Control, ⌥ Alt, ⇧ Shift, ⌘ Super");
}

TEST_F(KeyWordsTest, AreToldBeforeADeletion) {
    story.clickDelete(0);
    EXPECT_EQ(wordsOf("ショートカットキー: ⌃⌘Key(121)"), "Control + Super + Page Down");
}

} // namespace
} // namespace hollowfernpike
