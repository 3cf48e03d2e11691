#include "desktop/sway/KeyboardUserOnSway.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// Where the window is, or what is before it, when the program is started again.
class WindowToFrontOnSwayTest : public testing::Test, protected KeyboardUserOnSway {
protected:
    void SetUp() override {
        startUtility();
        openManagement();
    }

    pid_t ownProcess() { return story.utility().pid(); }
    pid_t frontProcess() { return front.copies().at(0); }
    SwayWindow window() { return story.pager.windowOf(ownProcess()).value(); }

    void switchToFront() { ASSERT_TRUE(story.switchTo(front)); }

    /// Switches to the other application, which must hide our window.
    void hideBehindFront() {
        switchToFront();
        ASSERT_TRUE(waitUntil([&] { return !window().isVisible; }));
    }

    /// Starts the program again: the window must be seen and have the keys, the other application
    /// none.
    void expectToCome() {
        const auto management = openManagement();
        EXPECT_TRUE(window().isVisible);
        const auto tab = story.keyboard.keycode("TAB");
        const auto seen = front.downs(tab);
        moveOn(management);
        EXPECT_EQ(front.downs(tab), seen);
        EXPECT_EQ(story.pager.windows().size(), 2);
    }
};

TEST_F(WindowToFrontOnSwayTest, ItComesFromBesideTheWindowInFront) {
    switchToFront();
    ASSERT_TRUE(window().isVisible);
    expectToCome();
}

TEST_F(WindowToFrontOnSwayTest, ItStaysInFront) {
    expectToCome();
}

TEST_F(WindowToFrontOnSwayTest, ItComesWithItsWorkspace) {
    story.pager.moveToWorkspace(ownProcess(), "away");
    hideBehindFront();
    expectToCome();
    EXPECT_EQ(story.pager.workspace(), "away");
    EXPECT_EQ(story.pager.windowOf(frontProcess())->workspace, "1");
}

TEST_F(WindowToFrontOnSwayTest, ItComesFromAHiddenTab) {
    story.pager.layOut("tabbed");
    hideBehindFront();
    expectToCome();
    EXPECT_FALSE(story.pager.windowOf(frontProcess())->isVisible);
}

TEST_F(WindowToFrontOnSwayTest, ItComesFromTheScratchpad) {
    story.pager.moveToScratchpad(ownProcess());
    hideBehindFront();
    expectToCome();
    EXPECT_EQ(window().workspace, "1");
}

TEST_F(WindowToFrontOnSwayTest, ItComesFromBehindAFullscreenWindow) {
    story.pager.makeFullscreen(frontProcess());
    hideBehindFront();
    expectToCome();
}

TEST_F(WindowToFrontOnSwayTest, ItOpensBeforeAFullscreenWindow) {
    story.pager.close(ownProcess());
    ASSERT_TRUE(isGone(managementTitle));
    story.pager.makeFullscreen(frontProcess());
    switchToFront();
    expectToCome();
}

TEST_F(WindowToFrontOnSwayTest, ItOpensAgainAfterItWasClosed) {
    story.pager.close(ownProcess());
    ASSERT_TRUE(isGone(managementTitle));
    EXPECT_TRUE(story.brings(target, front, bound)) << "the program goes on without it";
    story.pager.close(target.copies().at(0));
    ASSERT_TRUE(waitUntil([&] { return target.copies().empty(); }));
    switchToFront();
    expectToCome();
}

TEST_F(WindowToFrontOnSwayTest, AQuestionOnItGetsTheKeys) {
    press(managementComes(), words.remove);
    questionComes(words.removeTarget);
    switchToFront();
    ASSERT_TRUE(openWindow(std::string{words.titles.alert}));
    const auto question = questionComes(words.removeTarget);
    moveOn(question);
    strikeAndLeave(words.titles.alert, "ESC");
    EXPECT_TRUE(story.brings(target, front, bound)) << "it is not deleted";
}

TEST_F(WindowToFrontOnSwayTest, AFilePanelOnItGetsTheKeys) {
    press(managementComes(), words.exportList);
    dialogComes(words.titles.exporting);
    switchToFront();
    ASSERT_TRUE(openWindow(std::string{words.titles.exporting}));
    const auto panel = dialogComes(words.titles.exporting);
    const auto file = story.desktop.home() / "list.json";
    enterPath(panel, file);
    EXPECT_TRUE(waitUntil([&] { return shortcutsIn(file) == shortcutsIn(story.shortcutsFile()); }));
}

TEST_F(WindowToFrontOnSwayTest, AQuestionOnAnotherWorkspaceGetsTheKeysThere) {
    press(managementComes(), words.remove);
    questionComes(words.removeTarget);
    story.pager.goToWorkspace("2");
    ASSERT_TRUE(waitUntil([&] { return story.pager.workspace() == "2"; }));
    ASSERT_TRUE(openWindow(std::string{words.titles.alert}));
    questionComes(words.removeTarget);
    EXPECT_EQ(story.pager.workspace(), "1");
    strikeAndLeave(words.titles.alert, "RTRN");
    EXPECT_TRUE(listBecomes(nlohmann::json::array()));
}

TEST_F(WindowToFrontOnSwayTest, AnEditorStaysWhereItIs) {
    press(managementComes(), words.edit);
    dialogComes(words.titles.editing);
    switchToFront();
    openManagement();
    EXPECT_TRUE(hasWindow(editTitle));
    story.pager.run("[title=\"" + std::string{editTitle} + "\"] focus");
    dialogComes(words.titles.editing);
    strikeAndLeave(words.titles.editing, "ESC");
}

/// The program as a user's configuration starts it: by sway. Its session bus is that of others. It
/// is a copy, because sway's user may not be allowed to read the one that was built.
class StartedBySwayTest : public testing::Test {
protected:
    SwayStory story;

    void SetUp() override { std::filesystem::copy_file(HFP_PROGRAM, program()); }

    std::filesystem::path program() const {
        return story.desktop.commonGround() / "hollowfernpike";
    }

    void start() const {
        const auto ground = story.desktop.commonGround();
        story.pager.run("exec env XDG_DATA_HOME=" + (ground / "data").string() +
                        " DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"
                        " QT_LOGGING_RULES=hollowfernpike.keys.debug=true " +
                        program().string() + " 2>>" + log().string());
    }
    std::filesystem::path log() const { return story.desktop.commonGround() / "log"; }
};

// For a minute sway opens the first window of what it has started on the workspace of that start.
TEST_F(StartedBySwayTest, ItsWindowIsSeenAlsoFromAnotherWorkspace) {
    start();
    ASSERT_TRUE(waitUntil([this] { return contentsOf(log()).find("bound") != std::string::npos; }))
        << contentsOf(log());
    story.pager.goToWorkspace("2");
    start();
    ASSERT_TRUE(waitUntil([this] { return !story.pager.windows().empty(); })) << contentsOf(log());
    const auto window = [this] { return story.pager.windows().at(0); };
    EXPECT_TRUE(waitUntil([&] { return window().isVisible && window().isFocused; }))
        << "it is on workspace " << window().workspace;
}

} // namespace
} // namespace hollowfernpike
