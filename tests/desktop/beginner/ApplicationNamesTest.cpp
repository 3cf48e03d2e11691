#include "desktop/editor/EditorStory.h"
#include "desktop/resident/StatusMenu.h"
#include "support/WriteFile.h"

#include <filesystem>

namespace hollowfernpike {
namespace {

using namespace test;

/// Somebody who knows applications by their names, and not by the names of their entry files.
class ApplicationNamesTest : public testing::Test {
protected:
    static constexpr auto storedName = "org.example.Stored";

    EditorStory story;
    StatusMenu menu{story.desktop};
    Application& stored = story.install(storedName);

    void SetUp() override {
        test::writeFile(stored.entry(), "[Desktop Entry]\nType=Application\nName=Mousepad\n"
                                        "Name[ja]=マウスパッド\nExec=" +
                                            stored.program().string() + "\n");
        story.bind(bound, stored);
        menu.startHost();
        story.startUtility();
        ASSERT_TRUE(menu.showsItem());
        story.openManagement();
    }

    /// What the part of the window with the stored name says when the pointer rests there.
    std::string told(const Accessible& whole) {
        return story.reader.description(story.reader.find(whole, "label", storedName));
    }

    Accessible window() { return story.reader.find("frame", story.titles.management); }
};

TEST_F(ApplicationNamesTest, AreToldOnCardsAndInTheEditorBesideTheStoredOnes) {
    EXPECT_EQ(told(window()), "マウスパッド");
    const auto card = story.reader.find("panel", storedName + (" " + shown(bound)));
    EXPECT_EQ(story.reader.description(card), "マウスパッド");
    const auto editor = story.clickEdit(0);
    EXPECT_EQ(told(story.reader.find("dialog", story.titles.editing)), "マウスパッド");
    story.clickSave(editor);
    EXPECT_EQ(story.list()[0]["appName"], storedName);
}

TEST_F(ApplicationNamesTest, AreToldBeforeADeletion) {
    story.clickDelete(0);
    const auto explanation = story.reader.find("label", "ショートカットキー: " + shown(bound));
    EXPECT_THAT(story.reader.description(explanation), testing::StartsWith("マウスパッド: "));
}

TEST_F(ApplicationNamesTest, FollowTheLanguageAtOnce) {
    ASSERT_EQ(told(window()), "マウスパッド");
    menu.choose("English");
    story.titles = englishTitles;
    EXPECT_EQ(told(window()), "Mousepad");
}

TEST_F(ApplicationNamesTest, AreToldNoMoreWhenTheApplicationIsGone) {
    std::filesystem::remove(stored.entry());
    menu.choose("English"); // builds the cards anew
    story.titles = englishTitles;
    EXPECT_EQ(told(window()), "");
}

} // namespace
} // namespace hollowfernpike
