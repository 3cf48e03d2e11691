#include "desktop/sway/SwayStory.h"
#include "support/TemporaryDirectory.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

// The tests of the other stories on sway lean on what is shown here.

std::vector<unsigned> statesOfDowns(const Application& application, unsigned key) {
    std::vector<unsigned> states;
    for (const auto& seen : application.keys()) {
        if (seen.down && seen.key == key) {
            states.push_back(seen.state);
        }
    }
    return states;
}

TEST(SwayDesktopTest, IsASessionWithoutAnXServer) {
    const SwayDesktop desktop;
    const auto shell = desktop.start(
        {"sh", "-c", "echo \"$WAYLAND_DISPLAY,$DISPLAY,$XDG_SESSION_TYPE,$XDG_CURRENT_DESKTOP\""});
    EXPECT_EQ(shell->wait(), 0);
    EXPECT_EQ(shell->output(), "wayland-1,,wayland,sway\n");
    EXPECT_TRUE(std::filesystem::is_socket(
        std::filesystem::path(*desktop.environment().at("XDG_RUNTIME_DIR")) / "wayland-1"));
}

TEST(SwayDesktopTest, FailsWhereSwayIsNotInstalled) {
    const TemporaryDirectory programs;
    for (const char* program : {"dbus-daemon", "setpriv"}) {
        std::filesystem::create_symlink(std::filesystem::path("/usr/bin") / program,
                                        programs.path() / program);
    }
    ::setenv("PATH", programs.path().c_str(), 1);
    EXPECT_THAT([] { const SwayDesktop desktop; },
                testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("sway")));
}

TEST(SwayDesktopTest, RefusesWhatSwayDoesNotUnderstand) {
    const SwayDesktop desktop;
    EXPECT_THROW(desktop.ipc().command("no such command"), std::runtime_error);
}

class SwayKeyboardTest : public testing::TestWithParam<const char*> {
protected:
    SwayStory story{{}, {.layouts = GetParam()}};
    Application& front = story.open("Front");
};

TEST_P(SwayKeyboardTest, AWindowGetsEachKeyWithItsNumberAndTheModifiersBefore) {
    story.keyboard.strike({"LCTL", "LFSH", "AD06"});
    story.keyboard.strike({"AC10"});
    ASSERT_TRUE(story.getsKeys(front));
    const std::vector<SeenKey> expected{
        {true, 37, 0},  {true, 50, 4}, {true, 29, 5},  {false, 29, 5}, {false, 50, 5},
        {false, 37, 4}, {true, 47, 0}, {false, 47, 0}, {true, 48, 0},  {false, 48, 0}};
    EXPECT_EQ(front.keys(), expected);
}

TEST_P(SwayKeyboardTest, LocksStayLocked) {
    for (const auto* lock : {"CAPS", "NMLK", "CAPS", "NMLK"}) {
        story.keyboard.strike({lock});
        story.keyboard.strike({"AC01"});
    }
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_THAT(statesOfDowns(front, story.keyboard.keycode("AC01")),
                testing::ElementsAre(2, 18, 16, 0));
}

INSTANTIATE_TEST_SUITE_P(Under, SwayKeyboardTest, testing::Values("us", "de", "ru"),
                         [](const auto& layout) { return std::string{layout.param}; });

TEST(SwayKeyboardTest, EveryKeyThatCanBeBoundHasANumber) {
    const SwayStory story;
    for (const auto& keys : {namedKeys(), unnamedKeys()}) {
        for (const auto& key : keys) {
            EXPECT_GT(story.keyboard.keycode(key.name), 8) << key.name;
        }
    }
    EXPECT_EQ(story.keyboard.keycode("none"), 0);
}

// Bindings by symbol show which layout is in force.
TEST(SwayKeyboardTest, AnotherLayoutTakesEffectAtOnce) {
    SwayStory story("bindsym --no-warn y workspace written\n");
    auto& front = story.open("Front");
    const auto writesY = [&](const char* key) {
        story.pager.goToWorkspace("1");
        story.keyboard.strike({key});
        return waitUntil([&] { return story.pager.workspace() == "written"; });
    };
    EXPECT_TRUE(writesY("AD06"));
    story.keyboard.use({.layouts = "de"});
    EXPECT_TRUE(writesY("AB01"));
    story.keyboard.use({.layouts = "ru,us"});
    story.keyboard.lockGroup(1);
    EXPECT_TRUE(writesY("AD06"));
    story.keyboard.lockGroup(0);
    ASSERT_TRUE(story.switchTo(front));
    EXPECT_TRUE(story.passes(front, {"AD06"}));
}

TEST(SwayKeyboardTest, LetsGoOfEverythingWhenItGoes) {
    const SwayDesktop desktop;
    const VirtualKeyboard staying(desktop.waylandSocket());
    Application front(placeIn(desktop, HFP_WAYLAND_WINDOW), "Front", {});
    front.start();
    const SwayPager pager(desktop.ipc());
    ASSERT_TRUE(waitUntil([&] { return pager.focusedProcess() != 0; }));
    {
        VirtualKeyboard going(desktop.waylandSocket());
        going.press("LCTL");
        going.press("AC01");
        ASSERT_TRUE(waitUntil([&] { return front.downs(38) == 1; }));
    }
    EXPECT_TRUE(waitUntil([&] { return front.ups(38) == 1 && front.ups(37) == 1; }));
}

class SwayWindowsTest : public testing::Test {
protected:
    SwayStory story;
    Application& left = story.open("Left");
    Application& right = story.open("Right");
};

TEST_F(SwayWindowsTest, TheFocusedOneAloneGetsTheKeys) {
    EXPECT_TRUE(story.getsKeys(right));
    const auto seenByRight = right.keys().size();
    ASSERT_TRUE(story.switchTo(left));
    EXPECT_TRUE(story.passes(left, {"LCTL", "AC01"}));
    EXPECT_EQ(right.keys().size(), seenByRight);
    EXPECT_TRUE(story.switchTo(right));
    EXPECT_EQ(left.starts(), 1);
}

TEST_F(SwayWindowsTest, AreKnownByProcessClassAndTitle) {
    const auto window = story.pager.windowOf(left.copies().at(0));
    ASSERT_TRUE(window.has_value());
    EXPECT_EQ(window->applicationId, "Left");
    EXPECT_EQ(window->title, "Left");
    EXPECT_EQ(story.pager.windows().size(), 2);
    EXPECT_EQ(left.windows().size(), 1);
}

TEST_F(SwayWindowsTest, ABindingOfSwaySwallowsTheKey) {
    story.sway.run("bindcode Control+Mod1+46 workspace elsewhere");
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return story.pager.workspace() == "elsewhere"; }));
    ASSERT_TRUE(story.switchTo(right));
    EXPECT_TRUE(story.nobodySaw(bound));
    story.strike({bound.keyCode, control | shift});
    ASSERT_TRUE(story.getsKeys(right));
    EXPECT_EQ(right.downs(story.keycode(bound)), 1);
    EXPECT_FALSE(story.nobodySaw(bound));
}

TEST_F(SwayWindowsTest, AReloadTakesTheNewConfigurationAndLeavesTheWindows) {
    story.sway.run("bindcode Control+Mod1+46 workspace elsewhere");
    const auto told = story.desktop.commonGround() / "told";
    story.desktop.configure("bindsym Control+Mod1+k exec touch " + told.string());
    story.desktop.ipc().reload();
    EXPECT_TRUE(story.passes(right, bound.keys())) << "the binding is gone";
    story.strike(another);
    EXPECT_TRUE(story.passes(right, bound.keys())) << "still there";
    story.keyboard.strike({"LCTL", "LALT", "AC08"});
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(told); }));
    EXPECT_TRUE(story.switchTo(left));
}

TEST_F(SwayWindowsTest, AClosedOneEndsItsProgramWithSuccess) {
    auto& program = right.start();
    ASSERT_TRUE(waitUntil([&] { return right.windows().size() == 2; }));
    story.pager.close(program.pid());
    EXPECT_EQ(program.wait(), 0) << program.errors();
    EXPECT_EQ(right.copies().size(), 1);
}

TEST_F(SwayWindowsTest, EndWithSuccessWhenSwayEnds) {
    auto& asked = right.start();
    ASSERT_TRUE(waitUntil([&] { return right.windows().size() == 2; }));
    story.desktop.ipc().exit();
    EXPECT_EQ(story.desktop.compositor().wait(), 0);
    EXPECT_EQ(asked.wait(), 0) << asked.errors();
    EXPECT_TRUE(waitUntil([&] { return left.copies().empty() && right.copies().empty(); }));
}

TEST_F(SwayWindowsTest, EndWithSuccessWhenSwayIsKilled) {
    auto& asked = right.start();
    ASSERT_TRUE(waitUntil([&] { return right.windows().size() == 2; }));
    story.desktop.compositor().signal(SIGKILL);
    EXPECT_EQ(asked.wait(), 0) << asked.errors();
}

TEST(SwayWindowTest, SeveralOfOneProcessHaveNumbers) {
    SwayStory story;
    auto& several = story.open("Several", {.options = {"--windows", "3"}});
    EXPECT_TRUE(waitUntil([&] { return several.windows().size() == 3; }));
    EXPECT_THAT(several.windows(), testing::UnorderedElementsAre(1, 2, 3));
    EXPECT_EQ(story.pager.windows().size(), 3);
}

TEST(SwayWindowTest, CanBeginFullscreen) {
    SwayStory story;
    const auto& front = story.open("Front", {.options = {"--fullscreen"}});
    EXPECT_TRUE(
        waitUntil([&] { return story.pager.windowOf(front.copies().at(0))->isFullscreen; }));
}

TEST(SwayWindowTest, OfASingleCopyComesBackWhenAnotherCopyIsStarted) {
    SwayStory story;
    auto& single = story.open("Single", {.options = {"--single"}});
    const auto process = single.copies().at(0);
    story.pager.close(process);
    ASSERT_TRUE(waitUntil([&] { return story.pager.windows().empty(); }));
    EXPECT_EQ(single.copies(), std::vector{process});
    EXPECT_EQ(single.start().wait(), 0);
    EXPECT_TRUE(story.isInFront(single));
    EXPECT_EQ(story.pager.focusedProcess(), process);
}

TEST(SwayPagerTest, FindsWindowsWhereverTheyAre) {
    SwayStory story;
    const auto& hidden = story.open("Hidden");
    const auto& away = story.open("Away");
    const auto& front = story.open("Front");
    const auto isVisible = [&](const Application& application) {
        return story.pager.windowOf(application.copies().at(0))->isVisible;
    };
    story.sway.moveToScratchpad(hidden.copies().at(0));
    story.pager.moveToWorkspace(away.copies().at(0), "away");
    EXPECT_FALSE(isVisible(hidden));
    EXPECT_FALSE(isVisible(away));
    EXPECT_TRUE(isVisible(front));
    EXPECT_EQ(story.pager.windowOf(away.copies().at(0))->workspace, "away");
    EXPECT_EQ(story.pager.workspace(), "1");
    EXPECT_TRUE(story.switchTo(away));
    EXPECT_EQ(story.pager.workspace(), "away");
    EXPECT_TRUE(story.switchTo(hidden));
    story.pager.makeFullscreen(hidden.copies().at(0));
    EXPECT_FALSE(isVisible(away));
}

} // namespace
} // namespace hollowfernpike
