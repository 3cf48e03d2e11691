#include "desktop/gnome/GnomeStory.h"

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace hollowfernpike {
namespace {

using namespace test;
using testing::HasSubstr;

// The tests of the other stories on GNOME lean on what is shown here.

TEST(GnomeDesktopTest, IsASessionWithoutAnXServer) {
    const GnomeDesktop desktop;
    const auto shell = desktop.start(
        {"sh", "-c", "echo \"$WAYLAND_DISPLAY,$DISPLAY,$XDG_SESSION_TYPE,$XDG_CURRENT_DESKTOP\""});
    EXPECT_EQ(shell->wait(), 0);
    EXPECT_EQ(shell->output(), "wayland-0,,wayland,GNOME\n");
    EXPECT_TRUE(std::filesystem::is_socket(desktop.waylandSocket()));
    EXPECT_FALSE(desktop.evaluate("Main.overview.visible").get<bool>());
}

TEST(GnomeDesktopTest, TellsWhyAScriptFails) {
    const GnomeDesktop desktop;
    EXPECT_EQ(desktop.evaluate("6 * 7").get<int>(), 42);
    EXPECT_THAT([&] { desktop.evaluate("nobody.knows"); },
                testing::ThrowsMessage<std::runtime_error>(HasSubstr("nobody is not defined")));
}

class GnomeKeyboardTest : public testing::TestWithParam<const char*> {
protected:
    GnomeStory story{{.layout = {.layouts = GetParam()}}};
    Application& front = story.open("Front");
};

TEST_P(GnomeKeyboardTest, AWindowGetsEachKeyWithItsNumberAndTheModifiersBefore) {
    story.keyboard.strike({"LCTL", "LFSH", "AD06"});
    story.keyboard.strike({"AC10"});
    ASSERT_TRUE(story.getsKeys(front));
    auto keys = front.keys();
    keys.resize(8);
    const std::vector<SeenKey> expected{{true, 37, 0},  {true, 50, 4},  {true, 29, 5},
                                        {false, 29, 5}, {false, 50, 5}, {false, 37, 4},
                                        {true, 47, 0},  {false, 47, 0}};
    EXPECT_EQ(keys, expected);
}

INSTANTIATE_TEST_SUITE_P(Under, GnomeKeyboardTest, testing::Values("us", "de", "ru"),
                         [](const auto& layout) { return std::string{layout.param}; });

TEST(GnomeLayoutsTest, EveryLayoutCanBeTakenIntoUse) {
    GnomeStory story;
    for (const auto* layouts : {"de", "us,ru", "us(dvorak)", "jp", "us"}) {
        EXPECT_NO_THROW(story.keyboard.use({.layouts = layouts})) << layouts;
    }
    EXPECT_NO_THROW(story.keyboard.use({.layouts = "us", .options = "ctrl:nocaps"}));
    EXPECT_THROW(story.keyboard.use({.layouts = "nowhere"}), std::runtime_error);
}

class GnomeWindowsTest : public testing::Test {
protected:
    GnomeStory story;
    Application& left = story.open("Left");
    Application& right = story.open("Right");

    pid_t processOfLeft() const { return left.copies().at(0); }
    PagerWindow windowOfLeft() { return story.pager.windowOf(processOfLeft()).value(); }
};

TEST_F(GnomeWindowsTest, TheFocusedOneAloneGetsTheKeys) {
    EXPECT_TRUE(story.getsKeys(right));
    const auto seenByRight = right.keys().size();
    story.pager.focus(processOfLeft());
    EXPECT_TRUE(windowOfLeft().isFocused);
    EXPECT_TRUE(story.getsKeys(left));
    EXPECT_EQ(right.keys().size(), seenByRight);
}

TEST_F(GnomeWindowsTest, AreToldBackToFront) {
    const auto windows = story.pager.windows();
    ASSERT_EQ(windows.size(), 2);
    EXPECT_EQ(windows[0].process, processOfLeft());
    EXPECT_EQ(windows[0].applicationId, "Left");
    EXPECT_EQ(windows[0].title, "Left");
    EXPECT_EQ(windows[1].title, "Right");
    story.pager.focus(processOfLeft());
    EXPECT_EQ(story.pager.windows()[1].title, "Left");
}

TEST_F(GnomeWindowsTest, CanBeMinimisedAndComeBack) {
    story.minimize(processOfLeft());
    EXPECT_TRUE(waitUntil([&] { return !windowOfLeft().isVisible; }));
    story.pager.focus(processOfLeft());
    EXPECT_TRUE(waitUntil([&] { return windowOfLeft().isVisible; }));
    EXPECT_TRUE(story.getsKeys(left));
}

TEST_F(GnomeWindowsTest, CanBeFullscreenAndOnAnotherWorkspace) {
    story.pager.makeFullscreen(processOfLeft());
    EXPECT_TRUE(waitUntil([&] { return windowOfLeft().isFullscreen; }));
    const auto away = story.pager.otherWorkspace();
    story.pager.moveToWorkspace(processOfLeft(), away);
    EXPECT_EQ(windowOfLeft().workspace, away);
    EXPECT_NE(story.pager.workspace(), away);
    story.pager.goToWorkspace(away);
    EXPECT_EQ(story.pager.workspace(), away);
    EXPECT_TRUE(story.isInFront(left));
}

TEST_F(GnomeWindowsTest, ACombinationOfTheShellIsSwallowed) {
    const auto own = story.session().bindOwn();
    story.strike(own);
    ASSERT_TRUE(waitUntil([&] { return story.session().hasDoneOwn(); }));
    story.session().undoOwn();
    ASSERT_TRUE(story.switchTo(right));
    EXPECT_TRUE(story.nobodySaw(own));
}

TEST(GnomeRestartTest, TheNewOneTakesClientsOfTheSameSession) {
    GnomeStory story({.layout = {.layouts = "de"}});
    auto& front = story.open("Front");
    story.restart();
    ASSERT_TRUE(waitUntil([&] { return front.copies().empty(); }));
    front.start();
    EXPECT_TRUE(story.isInFront(front));
    EXPECT_TRUE(story.passes(front, {"AC01"}));
    EXPECT_NO_THROW(story.keyboard.use({.layouts = "us"}));
}

} // namespace
} // namespace hollowfernpike
