#pragma once

#include "desktop/wayland/KeyboardUserOnWayland.h"
#include "support/WaitUntil.h"

#include <memory>
#include <utility>

namespace hollowfernpike::test {

/// Where the window is, or what is before it, when the program is started again.
class WindowToFront : public testing::Test, protected KeyboardUserOnWayland {
protected:
    explicit WindowToFront(std::unique_ptr<WaylandStory> place = makeStory())
        : KeyboardUserOnWayland(japaneseWords, std::move(place)) {}

    void SetUp() override {
        startUtility();
        openManagement();
    }

    pid_t ownProcess() { return story.utility().pid(); }
    pid_t frontProcess() { return front.copies().at(0); }
    PagerWindow window() { return story.pager.windowOf(ownProcess()).value(); }

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

} // namespace hollowfernpike::test
