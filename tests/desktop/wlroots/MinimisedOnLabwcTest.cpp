#include "desktop/wlroots/WlrootsSession.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// sway does not minimise windows.
class MinimisedOnLabwcTest : public testing::Test {
protected:
    WlrootsStory story{WlrootsCompositor::labwc};
    Application& target = story.open("Target");
    Application& front = story.open("Front");

    std::string titleInFront() const {
        const auto windows = story.pager.windows();
        const auto found = std::ranges::find(windows, true, &PagerWindow::isFocused);
        return found == windows.end() ? std::string{} : found->title;
    }
};

TEST_F(MinimisedOnLabwcTest, AMinimisedWindowComesBackAndNoSecondOneIsOpened) {
    const auto process = target.copies().at(0);
    story.place().toplevels.minimise(process);
    ASSERT_TRUE(waitUntil([&] { return story.place().toplevels.isMinimised(process); }));
    ASSERT_TRUE(story.switchTo(front));
    story.bind(bound, target);
    story.startUtility();
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_FALSE(story.place().toplevels.isMinimised(process));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
}

TEST_F(MinimisedOnLabwcTest, OfTwoWindowsThatWhichWasUsedLastComesForward) {
    auto& second = story.install("Second", {.windowClass = "Target"});
    std::filesystem::remove(second.entry()); // so its window is one of Target's, too
    second.start();
    ASSERT_TRUE(waitUntil([&] { return !second.windows().empty(); }));
    ASSERT_TRUE(story.getsKeys(second));
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.switchTo(front));
    story.strike(bound);
    EXPECT_TRUE(waitUntil([&] { return titleInFront() == second.name(); })) << titleInFront();
    EXPECT_TRUE(story.getsKeys(second));
    EXPECT_EQ(target.starts(), 1);
}

} // namespace
} // namespace hollowfernpike
