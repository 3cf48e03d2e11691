#pragma once

#include "desktop/wayland/OnWayland.h"
#include "support/WaitUntil.h"

#include <memory>
#include <utility>

namespace hollowfernpike::test {

/// Where the target's window is before the press.
class Targets : public OnWayland {
protected:
    explicit Targets(std::unique_ptr<WaylandStory> place = makeStory())
        : OnWayland(std::move(place)) {}

    Application& target = story.open("Target");
    Application& front = story.open("Front");

    pid_t targetProcess() const { return target.copies().at(0); }
    bool isTargetVisible() const { return story.pager.windowOf(targetProcess())->isVisible; }

    /// Waits until the target's window cannot be seen, starts the utility and presses the keys.
    void bringFromHiding() {
        ASSERT_TRUE(waitUntil([&] { return !isTargetVisible(); }));
        ASSERT_TRUE(story.getsKeys(front));
        story.bind(bound, target);
        story.startUtility();
        story.strike(bound);
        EXPECT_TRUE(story.isInFront(target));
        EXPECT_TRUE(isTargetVisible());
        EXPECT_TRUE(story.getsKeys(target));
        EXPECT_TRUE(story.nobodySaw(bound));
        EXPECT_EQ(target.starts(), 1);
    }
};

} // namespace hollowfernpike::test
