#include "desktop/editor/EditorStory.h"

#include "show/Camera.h"
#include "show/Typing.h"
#include "support/FolderLog.h"
#include "support/WaitUntil.h"

#include <chrono>

namespace hollowfernpike {
namespace {

using namespace test;
using namespace std::chrono_literals;

/// Return presses the button that has the focus, and the default button from everywhere else.
class ReturnKeyTest : public EditorStoryTest {
protected:
    void focus(const Accessible& part) {
        for (int moves = 0; moves < 20; ++moves) {
            if (waitUntil([&] { return story.reader.isFocused(part); }, 300ms)) {
                return;
            }
            story.keyboard.strike({"TAB"});
        }
        ADD_FAILURE() << part.name << " does not get the focus";
    }

    /// Until the program opens another window, for which it has to be done with what came before.
    void settles() {
        story.openManagement();
        story.strikeAndLeave(story.clickAdd(), "ESC");
    }
};

TEST_F(ReturnKeyTest, OnCancelOfTheEditorCancels) {
    const auto editor = story.clickEdit(0);
    story.record(editor, third);
    focus(story.part(story.titles.editing, "push button", "キャンセル"));
    story.strikeAndLeave(editor, "RTRN");
    settles();
    EXPECT_EQ(story.list(), before);
}

TEST_F(ReturnKeyTest, OnTheRecordersButtonRecords) {
    const auto editor = story.clickEdit(0);
    focus(story.part(story.titles.editing, "push button", "記録"));
    story.keyboard.strike({"RTRN"});
    story.part(story.titles.editing, "push button", "停止");
    story.strike(third);
    EXPECT_TRUE(story.recorderShows(story.titles.editing, shown(third)));
    story.strikeAndLeave(editor, "RTRN");
    EXPECT_TRUE(story.saves({{quartz, third}}));
}

TEST_F(ReturnKeyTest, ShowsWhichButtonItPresses) {
    story.clickEdit(0);
    const auto place =
        story.reader.placeOf(story.part(story.titles.editing, "push button", "保存"));
    const auto looks = [&] {
        return show::picture(story.desktop.display())
            .copy(place.x, place.y, place.width, place.height);
    };
    const auto asDefault = looks();
    focus(story.part(story.titles.editing, "push button", "キャンセル"));
    EXPECT_TRUE(waitUntil([&] { return looks() != asDefault; }));
}

TEST_F(ReturnKeyTest, InAnEditorThatWasJustOpenedSaves) {
    FolderLog saves(story.shortcutsFile().parent_path());
    story.strikeAndLeave(story.clickEdit(0), "RTRN");
    EXPECT_TRUE(waitUntil([&] { return saves.arrivals("shortcuts.json") == 1; }));
    EXPECT_EQ(story.list(), before);
}

TEST_F(ReturnKeyTest, OnCancelOfTheApplicationsCancels) {
    const auto editor = story.clickAdd();
    const auto panel = story.openApplications(editor);
    show::type(story.keyboard, quartz.name());
    focus(story.part(story.titles.applications, "push button", "キャンセル"));
    story.strikeAndLeave(panel, "RTRN");
    ASSERT_TRUE(story.isActive(editor));
    for (const auto& part :
         story.reader.partsOf(story.reader.find("dialog", story.titles.adding))) {
        EXPECT_NE(part.name, quartz.name());
    }
}

TEST_F(ReturnKeyTest, OnCancelOfAQuestionCancels) {
    const auto question = story.clickDelete(0);
    focus(story.reader.find("push button", "キャンセル"));
    story.strikeAndLeave(question, "RTRN");
    settles();
    EXPECT_EQ(story.list(), before);
}

TEST_F(ReturnKeyTest, OnCancelOfAFilePanelCancels) {
    const auto panel = story.clickExport();
    focus(story.part(story.titles.exporting, "push button", "キャンセル"));
    story.strikeAndLeave(panel, "RTRN");
    settles();
    EXPECT_FALSE(exists(story.desktop.home() / "Hollowfernpike.json"));
}

} // namespace
} // namespace hollowfernpike
