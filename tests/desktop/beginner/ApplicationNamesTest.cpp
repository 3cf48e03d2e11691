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
    EditorStory story;
    StatusMenu menu{story.desktop};
    Application& stored = story.install("org.example.Stored");

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

    Accessible window() { return story.reader.find("frame", story.titles.management); }
};

TEST_F(ApplicationNamesTest, AreShownOnCardsInTheEditorAndInTheQuestion) {
    story.reader.find(window(), "label", "マウスパッド");
    story.reader.find(window(), "panel", "マウスパッド " + shown(bound));
    const auto question = story.clickDelete(0);
    story.reader.find("alert message", "「マウスパッド」のショートカットを削除しますか？");
    story.strikeAndLeave(question, "ESC");
    story.openManagement();
    const auto editor = story.clickEdit(0);
    story.part(story.titles.editing, "label", "マウスパッド");
    story.clickSave(editor);
    EXPECT_EQ(story.list()[0]["appName"], "org.example.Stored");
}

TEST_F(ApplicationNamesTest, FollowTheLanguageAtOnce) {
    story.reader.find(window(), "label", "マウスパッド");
    menu.choose("English");
    story.titles = englishTitles;
    story.reader.find(window(), "label", "Mousepad");
}

TEST_F(ApplicationNamesTest, GiveWayToTheStoredNameWhenTheApplicationIsGone) {
    std::filesystem::remove(stored.entry());
    menu.choose("English"); // builds the cards anew
    story.titles = englishTitles;
    story.reader.find(window(), "label", "org.example.Stored");
}

} // namespace
} // namespace hollowfernpike
