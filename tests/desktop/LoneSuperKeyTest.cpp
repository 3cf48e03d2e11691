#include "desktop/NewWindowManager.h"
#include "support/WaitUntil.h"
#include "support/WindowManagers.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

constexpr std::uint16_t letterJ = 38;
const Combination superJ{letterJ, command};

/// Whether, after some waiting, the utility holds Super+J on this window, too. That is the last of
/// its preparations.
testing::AssertionResult isLiveOn(Story& story, xcb_window_t window) {
    auto grab = story.grabOf(superJ);
    grab.window = window;
    return story.isLive(grab);
}

/// The same for the application's newest window.
testing::AssertionResult isLiveOn(Story& story, const Application& application) {
    return isLiveOn(story, application.windows().back());
}

/// Window managers that open something of their own when the Super key is struck alone.
class LoneSuperKeyTest : public testing::TestWithParam<const char*> {
protected:
    LoneSuperKeyTest() {
        story.turnRepetitionOff();
        for (const auto set : modifierSets()) {
            if ((set & command) != 0) {
                story.bind({letterJ, set}, target);
            }
        }
    }

    Story story{GetParam()};
    Application& target = story.install("Target");
};

TEST_P(LoneSuperKeyTest, EveryOrderOfTheModifiersBringsTheApplication) {
    auto& front = story.open("Front");
    target.start();
    ASSERT_TRUE(story.isInFront(target));
    story.startUtility();
    ASSERT_TRUE(isLiveOn(story, front));
    ASSERT_TRUE(isLiveOn(story, target));
    for (const char* super : {"LWIN", "RWIN"}) {
        for (unsigned others = 0; others < 8; ++others) {
            std::vector<std::string> keys{super};
            for (unsigned other = 0; other < 3; ++other) {
                if ((others >> other & 1U) != 0) {
                    keys.emplace_back(std::array{"LALT", "LCTL", "LFSH"}.at(other));
                }
            }
            std::ranges::sort(keys);
            do {
                auto press = keys;
                press.emplace_back("AC07");
                ASSERT_TRUE(story.brings(target, front, press)) << testing::PrintToString(press);
            } while (std::ranges::next_permutation(keys).found);
        }
    }
    EXPECT_EQ(target.starts(), 1U);
}

TEST_P(LoneSuperKeyTest, TheApplicationIsLaunchedWhereNoWindowIsOpen) {
    story.startUtility();
    ASSERT_TRUE(isLiveOn(story, story.pager.focusedWindow()));
    story.strike(superJ);
    ASSERT_TRUE(story.isInFront(target));
    auto& later = story.open("Later");
    ASSERT_TRUE(isLiveOn(story, later));
    EXPECT_TRUE(story.brings(target, later, superJ));
    EXPECT_EQ(target.starts(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Under, LoneSuperKeyTest,
                         testing::Values("mutter", "gnome-shell", "cinnamon"), windowManagerName);

/// The utility starts under one window manager; that crashes, and another one takes its place.
class NewWindowManagerTest : public testing::Test {
protected:
    void start(const char* windowManager) {
        story.emplace(windowManager);
        target = &story->open("Target");
        front = &story->open("Front");
        story->bind(superJ, *target);
        story->startUtility();
    }

    void replaceBy(const std::vector<std::string>& program) {
        story->desktop.windowManager().signal(SIGKILL);
        successor = startNewWindowManager(*story, program);
        story->turnRepetitionOff();
    }

    std::optional<Story> story;
    Application* target = nullptr;
    Application* front = nullptr;
    std::unique_ptr<ChildProcess> successor;
};

TEST_F(NewWindowManagerTest, ThatItHoldsTheSuperKeyIsNoticed) {
    start("openbox");
    EXPECT_TRUE(story->brings(*target, *front, superJ));
    replaceBy({"mutter", "--x11"});
    ASSERT_TRUE(isLiveOn(*story, *front));
    ASSERT_TRUE(isLiveOn(*story, *target));
    EXPECT_TRUE(story->brings(*target, *front, superJ));
}

TEST_F(NewWindowManagerTest, ThatItDoesNotHoldTheSuperKeyIsNoticed) {
    start("icewm");
    ASSERT_TRUE(isLiveOn(*story, *front));
    replaceBy({"openbox"});
    auto grab = story->grabOf(superJ);
    grab.window = front->windows().back();
    XClient other(story->desktop.display());
    EXPECT_TRUE(waitUntil([&] { return !other.areTaken({grab}); })) << "still held on windows";
    EXPECT_TRUE(story->brings(*target, *front, superJ));
}

/// icewm holds both Super keys and has no window of its own under the pointer.
class SuperKeyUnderIcewmTest : public testing::Test {
protected:
    SuperKeyUnderIcewmTest() {
        story.turnRepetitionOff();
        story.bind(superJ, target);
        story.startUtility();
        EXPECT_TRUE(isLiveOn(story, front));
        EXPECT_TRUE(isLiveOn(story, target));
        letTheKeysBeGrabbedAnew();
    }

    /// The first key press changes the keyboard, and icewm grabs its keys anew. Once it has served
    /// a later request, it has done so.
    void letTheKeysBeGrabbedAnew() {
        EXPECT_TRUE(story.getsKeys(front));
        EXPECT_TRUE(story.switchTo(target));
    }

    void point(const char* x, const char* y) { story.run({"xdotool", "mousemove", x, y}); }

    Story story{"icewm"};
    Application& target = story.open("Target");
    Application& front = story.open("Front");
};

TEST_F(SuperKeyUnderIcewmTest, WithThePointerOverAWindowThePressIsSwallowed) {
    point("100", "100");
    EXPECT_TRUE(story.brings(target, front, {"LWIN", "AC07"}));
    EXPECT_TRUE(story.brings(target, front, {"RWIN", "AC07"}));
}

TEST_F(SuperKeyUnderIcewmTest, WithThePointerOverTheBareRootThePressIsShared) {
    point("900", "500");
    for (std::size_t press = 1; press <= 3; ++press) {
        ASSERT_TRUE(story.switchTo(front));
        story.strike(superJ);
        ASSERT_TRUE(story.isInFront(target));
        EXPECT_TRUE(waitUntil([&] { return front.downs(story.grabOf(superJ).key) >= press; }));
        EXPECT_EQ(front.downs(story.grabOf(superJ).key), press);
    }
}

} // namespace
} // namespace hollowfernpike
