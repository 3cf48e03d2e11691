#pragma once

#include "desktop/wayland/OnWayland.h"
#include "support/ContextSwitches.h"
#include "support/WaitUntil.h"

#include <memory>
#include <utility>

namespace hollowfernpike::test {

/// The utility with what it is to do done, so that it wakes up for something only.
class Quiet : public OnWayland {
protected:
    explicit Quiet(std::unique_ptr<WaylandStory> place = makeStory())
        : OnWayland(std::move(place)) {}

    Application& front = story.open("Front");

    void SetUp() override {
        story.bind(bound, front);
        story.bind(another, front);
        story.startUtility();
        // What its start still has to do is done by then.
        ASSERT_TRUE(waitUntil([this] { return sleepsThrough("6"); })) << story.utilityTells();
    }

    std::uint64_t wakeUps() { return timesGoneToSleep(story.utility().pid()); }

    bool sleepsThrough(const std::string& seconds) {
        const auto before = wakeUps();
        return story.session().start({"sleep", seconds})->wait() == 0 && wakeUps() == before;
    }
};

} // namespace hollowfernpike::test
