#include "desktop/editor/EditorStory.h"

#include "show/Typing.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// Which application a shortcut is for.
class ChoosingTest : public EditorStoryTest {
protected:
    const std::string_view adding = story.titles.adding;
    const std::string_view editing = story.titles.editing;

    std::filesystem::path write(const std::string& name, const std::string& text) {
        auto file = story.desktop.home() / name;
        std::ofstream(file) << text;
        return file;
    }

    /// An entry outside the applications directories, so that no menu lists it.
    std::filesystem::path strayEntry() {
        auto entry = write("stray.desktop", "[Desktop Entry]\nType=Application\nName=Stray\nExec=" +
                                                quartz.program().string() + "\n");
        std::filesystem::permissions(entry, std::filesystem::perms::owner_all); // as it is trusted
        return entry;
    }

    /// Chooses an entry file by its path in the panel behind "Other...".
    void chooseFile(xcb_window_t editor, const std::filesystem::path& file) {
        const auto panel = story.openApplications(editor);
        story.clickOn(story.part(story.titles.applications, "push button", "その他..."));
        story.enterPath(story.comes(story.titles.applications, panel), file);
        story.goes(panel);
    }

    /// Saves, is refused with this message alone, and answers it.
    void expectRefusal(std::string_view title, std::string_view message) {
        story.clickOn(story.part(title, "push button", "保存"));
        const auto alert = story.comes(story.titles.alert);
        story.reader.find("label", message);
        story.strikeAndLeave(alert, "RTRN");
        EXPECT_EQ(story.list(), before);
    }
};

TEST_F(ChoosingTest, AnEntryThatIsNotInstalledIsAnApplicationOfItsOwn) {
    const auto entry = strayEntry();
    const auto editor = story.clickAdd();
    chooseFile(editor, entry);
    story.part(adding, "label", "stray");
    story.clickRecord(adding);
    EXPECT_TRUE(story.records(adding, third));
    story.clickSave(editor);
    auto expected = before;
    expected.push_back({{"id", story.list()[1]["id"]},
                        {"keyCode", third.keyCode},
                        {"modifierFlags", third.modifierFlags},
                        {"appPath", entry.string()},
                        {"appName", "stray"},
                        {"appBundleIdentifier", "stray"}});
    EXPECT_TRUE(story.listBecomes(expected));
    ASSERT_TRUE(story.isLive(story.grabOf(third)));
    ASSERT_TRUE(story.switchTo(story.front));
    const auto known = story.pager.stacking();
    xcb_window_t started = XCB_NONE;
    story.strike(third);
    ASSERT_TRUE(waitUntil([&] {
        started = story.pager.activeWindow();
        return started != XCB_NONE && std::ranges::find(known, started) == known.end();
    })) << "it starts the program that it names";
    ASSERT_TRUE(story.switchTo(story.front));
    story.strike(third);
    EXPECT_TRUE(story.isActive(started));
    EXPECT_EQ(story.pager.stacking().size(), known.size() + 1);
}

TEST_F(ChoosingTest, AnApplicationWithoutIdentifierCannotBeSaved) {
    const auto editor = story.clickAdd();
    chooseFile(editor, write("broken.desktop", "no entry at all"));
    story.part(adding, "label", "broken");
    story.clickRecord(adding);
    EXPECT_TRUE(story.records(adding, third));
    expectRefusal(adding, text::selectAnApplication);
    EXPECT_TRUE(story.isActive(editor));
    EXPECT_TRUE(story.recorderShows(adding, shown(third))) << "what was entered stays";
    story.clickOn(story.part(adding, "push button", "アプリを選択..."));
    const auto panel = story.comes(story.titles.applications);
    show::type(story.keyboard, quartz.name());
    story.strikeAndLeave(panel, "RTRN");
    story.part(adding, "label", quartz.name());
    story.clickSave(editor);
    EXPECT_TRUE(story.saves({{quartz, bound}, {quartz, third}}));
}

TEST_F(ChoosingTest, AnUnreadableEntryKeepsTheIdentifierOfTheEditedShortcut) {
    const auto file = write("broken.desktop", "no entry at all");
    const auto editor = story.clickEdit(0);
    chooseFile(editor, file);
    story.part(editing, "label", "broken");
    story.clickSave(editor);
    auto expected = before;
    expected[0]["appPath"] = file.string();
    expected[0]["appName"] = "broken";
    EXPECT_TRUE(story.listBecomes(expected));
    EXPECT_TRUE(story.brings(quartz, story.front, bound)) << "it is found by its identifier";
}

TEST_F(ChoosingTest, APanelThatIsCancelledLeavesANewShortcutWithoutApplication) {
    const auto editor = story.clickAdd();
    const auto place = story.screen.placeOf(editor);
    story.strikeAndLeave(story.openApplications(editor), "ESC");
    ASSERT_TRUE(story.isActive(editor));
    EXPECT_EQ(story.screen.placeOf(editor), place);
    story.keyboard.strike({"RTRN"}); // Save is disabled
    story.choose(editor, quartz.name());
    EXPECT_EQ(story.list(), before);
}

TEST_F(ChoosingTest, APanelThatIsCancelledLeavesAnEditedShortcutAsItIs) {
    const auto editor = story.clickEdit(0);
    story.strikeAndLeave(story.openApplications(editor), "ESC");
    ASSERT_TRUE(story.isActive(editor));
    story.part(editing, "label", quartz.name());
    story.clickSave(editor);
    EXPECT_EQ(story.list(), before);
}

TEST_F(ChoosingTest, AFilePanelThatIsCancelledLeadsBackToTheApplications) {
    const auto editor = story.clickEdit(0);
    const auto panel = story.openApplications(editor);
    story.clickOn(story.part(story.titles.applications, "push button", "その他..."));
    story.strikeAndLeave(story.comes(story.titles.applications, panel), "ESC");
    story.strikeAndLeave(panel, "ESC");
    story.clickSave(editor);
    EXPECT_EQ(story.list(), before);
}

TEST_F(ChoosingTest, TheEditorGrowsOnceWithItsTopEdgeInPlace) {
    const auto editor = story.clickAdd();
    const auto small = story.screen.placeOf(editor);
    ASSERT_EQ(small.height, 200);
    const Place grown{.x = small.x, .y = small.y, .width = 400, .height = 280};
    for (const auto* application : {&quartz, &story.front}) {
        story.choose(editor, application->name());
        story.part(adding, "label", application->name());
        EXPECT_EQ(story.screen.placeOf(editor), grown);
    }
}

} // namespace
} // namespace hollowfernpike
