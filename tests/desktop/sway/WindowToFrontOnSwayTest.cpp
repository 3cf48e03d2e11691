#include "desktop/sway/SwayStory.h"
#include "desktop/wayland/WindowToFront.h"
#include "support/Files.h"
#include "support/WaitUntil.h"

#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

class WindowToFrontOnSwayTest : public WindowToFront {
protected:
    WindowToFrontOnSwayTest() : WindowToFront(std::make_unique<SwayStory>()) {}

    SwayStory& onSway = static_cast<SwayStory&>(story);
};

TEST_F(WindowToFrontOnSwayTest, ItComesFromAHiddenTab) {
    onSway.sway.layOut("tabbed");
    hideBehindFront();
    expectToCome();
    EXPECT_FALSE(story.pager.windowOf(frontProcess())->isVisible);
}

TEST_F(WindowToFrontOnSwayTest, ItComesFromTheScratchpad) {
    onSway.sway.moveToScratchpad(ownProcess());
    hideBehindFront();
    expectToCome();
    EXPECT_EQ(window().workspace, "1");
}

TEST_F(WindowToFrontOnSwayTest, ItComesFromBehindAFullscreenWindow) {
    story.pager.makeFullscreen(frontProcess());
    hideBehindFront();
    expectToCome();
}

/// The program as a user's configuration starts it: by sway. Its session bus is that of others.
class StartedBySwayTest : public testing::Test {
protected:
    SwayStory story;

    void start() const {
        const auto ground = story.desktop.commonGround();
        story.sway.run("exec env XDG_DATA_HOME=" + (ground / "data").string() +
                       " DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"
                       " QT_LOGGING_RULES=hollowfernpike.keys.debug=true " +
                       story.program() + " 2>>" + log().string());
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
