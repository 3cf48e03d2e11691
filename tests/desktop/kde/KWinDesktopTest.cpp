#include "desktop/kde/KWinStory.h"
#include "support/LentConnection.h"
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
using testing::ElementsAre;

// The tests of the other stories on KWin lean on what is shown here.

TEST(KWinDesktopTest, IsASessionWithoutAnXServer) {
    const KWinDesktop desktop;
    const auto shell = desktop.start(
        {"sh", "-c", "echo \"$WAYLAND_DISPLAY,$DISPLAY,$XDG_SESSION_TYPE,$XDG_CURRENT_DESKTOP\""});
    EXPECT_EQ(shell->wait(), 0);
    EXPECT_EQ(shell->output(), "wayland-0,,wayland,KDE\n");
    EXPECT_TRUE(std::filesystem::is_socket(
        std::filesystem::path(*desktop.environment().at("XDG_RUNTIME_DIR")) / "wayland-0"));
}

TEST(KWinDesktopTest, FailsWhereKWinIsNotInstalled) {
    const TemporaryDirectory programs;
    for (const char* program : {"dbus-daemon", "setpriv"}) {
        std::filesystem::create_symlink(std::filesystem::path("/usr/bin") / program,
                                        programs.path() / program);
    }
    ::setenv("PATH", programs.path().c_str(), 1);
    EXPECT_THAT([] { const KWinDesktop desktop; },
                testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("kwin_wayland")));
}

class KWinKeyboardTest : public testing::TestWithParam<const char*> {
protected:
    KWinStory story{{.layout = {.layouts = GetParam()}}};
    Application& front = story.open("Front");
};

TEST_P(KWinKeyboardTest, AWindowGetsEachKeyWithItsNumberAndTheModifiersBefore) {
    story.keyboard.strike({"LCTL", "LFSH", "AD06"});
    story.keyboard.strike({"AC10"});
    ASSERT_TRUE(story.getsKeys(front));
    auto keys = front.keys();
    keys.resize(10);
    const std::vector<SeenKey> expected{
        {true, 37, 0},  {true, 50, 4}, {true, 29, 5},  {false, 29, 5}, {false, 50, 5},
        {false, 37, 4}, {true, 47, 0}, {false, 47, 0}, {true, 48, 0},  {false, 48, 0}};
    EXPECT_EQ(keys, expected);
}

TEST_P(KWinKeyboardTest, LocksStayLockedUntilALayoutIsTakenIntoUse) {
    for (const auto* lock : {"CAPS", "NMLK", "CAPS", "NMLK", "CAPS", "NMLK"}) {
        story.keyboard.strike({lock});
        story.keyboard.strike({"AC01"});
    }
    story.keyboard.use({.layouts = "fr"});
    story.keyboard.strike({"AC01"});
    ASSERT_TRUE(story.getsKeys(front));
    std::vector<unsigned> states;
    for (const auto& seen : front.keys()) {
        if (seen.down && seen.key == story.keyboard.keycode("AC01")) {
            states.push_back(seen.state);
        }
    }
    EXPECT_THAT(states, ElementsAre(2, 18, 16, 0, 2, 18, 0));
}

INSTANTIATE_TEST_SUITE_P(Under, KWinKeyboardTest, testing::Values("us", "de", "ru"),
                         [](const auto& layout) { return std::string{layout.param}; });

TEST(KWinLayoutsTest, EveryLayoutCanBeTakenIntoUse) {
    KWinStory story;
    for (const auto* layouts : {"de", "us,ru", "us(dvorak)", "jp", "us"}) {
        EXPECT_NO_THROW(story.keyboard.use({.layouts = layouts})) << layouts;
    }
    EXPECT_NO_THROW(story.keyboard.use({.layouts = "us", .options = "ctrl:nocaps"}));
    EXPECT_THROW(story.keyboard.use({.layouts = "nowhere"}), std::runtime_error);
}

TEST(KWinLayoutsTest, EachOfTwoLayoutsCanBeLocked) {
    KWinStory story({.layout = {.layouts = "us,de"}});
    const auto& front = story.open("Front");
    for (const auto group : {1U, 0U, 1U}) {
        story.keyboard.lockGroup(group);
        EXPECT_EQ(callOnBus(story.desktop.environment(),
                            {"org.kde.keyboard", "/Layouts", "org.kde.KeyboardLayouts.getLayout"}),
                  "(uint32 " + std::to_string(group) + ",)\n");
        EXPECT_TRUE(story.getsKeys(front));
    }
    EXPECT_THROW(story.keyboard.lockGroup(2), std::runtime_error);
}

class KWinWindowsTest : public testing::Test {
protected:
    KWinStory story{{.desktops = 2}};
    Application& left = story.open("Left");
    Application& right = story.open("Right");
    KWinPager& pager = story.kwin;

    KWinWindow windowOf(const Application& application) {
        return pager.windowOf(application.copies().at(0)).value();
    }

    pid_t processOfLeft() const { return left.copies().at(0); }
};

TEST_F(KWinWindowsTest, TheActiveOneAloneGetsTheKeys) {
    EXPECT_TRUE(story.getsKeys(right));
    const auto seenByRight = right.keys().size();
    EXPECT_EQ(left.keys().size(), 0);
    pager.activate(processOfLeft());
    EXPECT_TRUE(windowOf(left).isActive);
    EXPECT_TRUE(story.getsKeys(left));
    EXPECT_EQ(right.keys().size(), seenByRight);
}

TEST_F(KWinWindowsTest, AreKnownByProcessClassAndTitleBackToFront) {
    const auto windows = pager.windows();
    ASSERT_EQ(windows.size(), 2);
    EXPECT_EQ(windows[0].process, processOfLeft());
    EXPECT_EQ(windows[0].applicationId, "Left");
    EXPECT_EQ(windows[0].title, "Left");
    EXPECT_EQ(windows[1].title, "Right");
    pager.activate(processOfLeft());
    EXPECT_EQ(pager.windows()[1].title, "Left");
}

TEST_F(KWinWindowsTest, CanBeMinimizedAndComeBack) {
    pager.minimize(processOfLeft());
    EXPECT_TRUE(windowOf(left).isMinimized);
    pager.activate(processOfLeft());
    EXPECT_FALSE(windowOf(left).isMinimized);
    EXPECT_TRUE(story.getsKeys(left));
}

TEST_F(KWinWindowsTest, CanBeFullscreen) {
    pager.makeFullscreen(processOfLeft());
    EXPECT_TRUE(waitUntil([&] { return windowOf(left).isFullscreen; }));
}

TEST_F(KWinWindowsTest, CanBeOnAnotherDesktop) {
    EXPECT_THAT(pager.desktops().all(), ElementsAre("desktop-1", "desktop-2"));
    EXPECT_EQ(pager.desktops().current(), "desktop-1");
    EXPECT_THAT(windowOf(left).desktops, ElementsAre("desktop-1"));
    pager.moveToDesktop(processOfLeft(), "desktop-2");
    EXPECT_THAT(windowOf(left).desktops, ElementsAre("desktop-2"));
    EXPECT_EQ(pager.desktops().current(), "desktop-1");
    pager.desktops().goTo("desktop-2");
    EXPECT_EQ(pager.desktops().current(), "desktop-2");
    EXPECT_TRUE(story.isInFront(left));
    EXPECT_TRUE(story.getsKeys(left));
    EXPECT_THROW(pager.desktops().goTo("nowhere"), std::invalid_argument);
}

TEST_F(KWinWindowsTest, ADesktopCanBeAdded) {
    pager.desktops().add("Third");
    ASSERT_EQ(pager.desktops().all().size(), 3);
    const auto third = pager.desktops().all()[2];
    pager.moveToDesktop(processOfLeft(), third);
    pager.desktops().goTo(third);
    EXPECT_TRUE(story.isInFront(left));
    EXPECT_THAT(windowOf(left).desktops, ElementsAre(third));
}

TEST_F(KWinWindowsTest, ACombinationOfKWinIsSwallowed) {
    const auto own = story.session().bindOwn();
    story.strike(own);
    ASSERT_TRUE(waitUntil([&] { return story.session().hasDoneOwn(); }));
    story.session().undoOwn();
    ASSERT_TRUE(story.switchTo(right));
    EXPECT_TRUE(story.nobodySaw(own));
    EXPECT_TRUE(story.passes(right, {"LCTL", "LFSH", "FK02"}));
    EXPECT_FALSE(story.nobodySaw(own));
}

TEST_F(KWinWindowsTest, AClosedOneEndsItsProgramWithSuccess) {
    auto& program = right.start();
    ASSERT_TRUE(waitUntil([&] { return right.windows().size() == 2; }));
    pager.close(program.pid());
    EXPECT_EQ(program.wait(), 0) << program.errors();
    EXPECT_EQ(right.copies().size(), 1);
}

TEST_F(KWinWindowsTest, EndWithSuccessWhenKWinIsKilled) {
    auto& asked = right.start();
    ASSERT_TRUE(waitUntil([&] { return right.windows().size() == 2; }));
    story.desktop.compositor().signal(SIGKILL);
    EXPECT_EQ(asked.wait(), 0) << asked.errors();
}

TEST(KWinRestartTest, TheNewOneTakesClientsOfTheSameSession) {
    KWinStory story({.layout = {.layouts = "de"}, .desktops = 2});
    auto& front = story.open("Front");
    story.keyboard.press("LCTL");
    story.restart();
    ASSERT_TRUE(waitUntil([&] { return front.copies().empty(); }));
    front.start();
    EXPECT_TRUE(story.isInFront(front));
    EXPECT_TRUE(story.passes(front, {"AC01"}));
    EXPECT_EQ(front.keys().back().state, 0) << "no key is held";
    EXPECT_EQ(story.kwin.desktops().all().size(), 2);
    EXPECT_NO_THROW(story.keyboard.use({.layouts = "us"}));
}

/// KWin judges its clients by their programs.
class KWinRightsTest : public testing::Test {
protected:
    KWinDesktop desktop;

    /// Whether KWin lets a copy of the program that lends connections see windows.
    bool strangerSeesWindows() const {
        const auto start = [this](const auto& commandLine) { return desktop.start(commandLine); };
        return LentConnection({start, desktop.lend(stranger), stranger.parent_path() / "place"})
            .get()
            .offers("org_kde_plasma_window_management");
    }

    const std::filesystem::path stranger = desktop.home() / "stranger";

    void SetUp() override { std::filesystem::copy_file(HFP_CONNECTION_LENDER, stranger); }
};

TEST_F(KWinRightsTest, AProgramWithoutAnEntrySeesNoWindows) {
    EXPECT_FALSE(strangerSeesWindows());
}

TEST_F(KWinRightsTest, AnEntryThatComesLaterLetsItsProgramSeeWindows) {
    desktop.grant({.identifier = "stranger",
                   .program = stranger,
                   .interfaces = "org_kde_plasma_window_management"});
    EXPECT_TRUE(waitUntil([&] { return strangerSeesWindows(); }));
}

TEST(KWinScaleTest, AScreenMayHaveTwoPixelsForOne) {
    const KWinDesktop desktop({.scale = 2});
    auto connection = desktop.lendConnection();
    auto* const screen = connection.get().bind<wl_output>(wl_output_interface, 2);
    static constexpr wl_output_listener listener{
        .geometry = ignoreEvent,
        .mode = ignoreEvent,
        .done = ignoreEvent,
        .scale = [](void* scale, wl_output* /*screen*/,
                    std::int32_t factor) { *static_cast<int*>(scale) = factor; },
        .name = ignoreEvent,
        .description = ignoreEvent};
    int scale = 0;
    wl_output_add_listener(screen, &listener, &scale);
    connection.get().sync();
    wl_output_destroy(screen);
    EXPECT_EQ(scale, 2);
}

} // namespace
} // namespace hollowfernpike
