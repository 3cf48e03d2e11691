#pragma once

#include "desktop/wayland/OnWayland.h"

#include <csignal>
#include <memory>
#include <utility>

namespace hollowfernpike::test {

/// Two combinations that bring the same application, until the utility ends.
class Ending : public OnWayland {
protected:
    explicit Ending(std::unique_ptr<WaylandStory> place = makeStory())
        : OnWayland(std::move(place)) {}

    Application& front = story.open("Front");
    Application& target = story.open("Target");

    void SetUp() override {
        story.bind(bound, target);
        story.bind(another, target);
        story.startUtility();
    }

    void killUtility() {
        story.utility().signal(SIGKILL);
        ASSERT_EQ(story.utility().wait(), -SIGKILL);
    }
};

} // namespace hollowfernpike::test
