#include "desktop/wayland/WindowToFront.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class WindowToFrontOnWaylandTest : public WindowToFront {};

TEST_F(WindowToFrontOnWaylandTest, ItComesFromBesideTheWindowInFront) {
    switchToFront();
    ASSERT_TRUE(window().isVisible);
    expectToCome();
}

TEST_F(WindowToFrontOnWaylandTest, ItStaysInFront) {
    expectToCome();
}

TEST_F(WindowToFrontOnWaylandTest, ItComesWithItsWorkspace) {
    const auto here = story.pager.workspace();
    const auto away = story.pager.otherWorkspace();
    story.pager.moveToWorkspace(ownProcess(), away);
    hideBehindFront();
    expectToCome();
    EXPECT_EQ(story.pager.workspace(), away);
    EXPECT_EQ(story.pager.windowOf(frontProcess())->workspace, here);
}

TEST_F(WindowToFrontOnWaylandTest, ItOpensBeforeAFullscreenWindow) {
    story.pager.close(ownProcess());
    ASSERT_TRUE(isGone(managementTitle));
    story.pager.makeFullscreen(frontProcess());
    switchToFront();
    expectToCome();
}

TEST_F(WindowToFrontOnWaylandTest, ItOpensAgainAfterItWasClosed) {
    story.pager.close(ownProcess());
    ASSERT_TRUE(isGone(managementTitle));
    EXPECT_TRUE(story.brings(target, front, bound)) << "the program goes on without it";
    story.pager.close(target.copies().at(0));
    ASSERT_TRUE(waitUntil([&] { return target.copies().empty(); }));
    switchToFront();
    expectToCome();
}

TEST_F(WindowToFrontOnWaylandTest, AQuestionOnItGetsTheKeys) {
    press(managementComes(), words.remove);
    questionComes(words.removeTarget);
    switchToFront();
    ASSERT_TRUE(openWindow(std::string{words.titles.alert}));
    const auto question = questionComes(words.removeTarget);
    moveOn(question);
    strikeAndLeave(words.titles.alert, "ESC");
    EXPECT_TRUE(story.brings(target, front, bound)) << "it is not deleted";
}

TEST_F(WindowToFrontOnWaylandTest, AFilePanelOnItGetsTheKeys) {
    press(managementComes(), words.exportList);
    dialogComes(words.titles.exporting);
    switchToFront();
    ASSERT_TRUE(openWindow(std::string{words.titles.exporting}));
    const auto panel = dialogComes(words.titles.exporting);
    const auto file = story.session().home() / "list.json";
    enterPath(panel, file);
    EXPECT_TRUE(waitUntil([&] { return shortcutsIn(file) == shortcutsIn(story.shortcutsFile()); }));
}

TEST_F(WindowToFrontOnWaylandTest, AQuestionOnAnotherWorkspaceGetsTheKeysThere) {
    press(managementComes(), words.remove);
    questionComes(words.removeTarget);
    const auto here = story.pager.workspace();
    const auto away = story.pager.otherWorkspace();
    story.pager.goToWorkspace(away);
    ASSERT_TRUE(waitUntil([&] { return story.pager.workspace() == away; }));
    ASSERT_TRUE(openWindow(std::string{words.titles.alert}));
    questionComes(words.removeTarget);
    EXPECT_EQ(story.pager.workspace(), here);
    strikeAndLeave(words.titles.alert, "RTRN");
    EXPECT_TRUE(listBecomes(nlohmann::json::array()));
}

TEST_F(WindowToFrontOnWaylandTest, AnEditorStaysWhereItIs) {
    press(managementComes(), words.edit);
    dialogComes(words.titles.editing);
    switchToFront();
    openManagement();
    EXPECT_TRUE(hasWindow(editTitle));
    story.pager.focusTitled(editTitle);
    dialogComes(words.titles.editing);
    strikeAndLeave(words.titles.editing, "ESC");
}

} // namespace
} // namespace hollowfernpike
