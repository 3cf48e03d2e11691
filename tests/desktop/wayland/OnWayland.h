#pragma once

#include "desktop/wayland/WaylandStory.h"

#include <memory>
#include <utility>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A test with a story on the desktop that its program is for.
class OnWayland : public testing::Test {
    std::unique_ptr<WaylandStory> story_;

protected:
    explicit OnWayland(std::unique_ptr<WaylandStory> place = makeStory())
        : story_(std::move(place)), story(*story_) {}

    WaylandStory& story;
};

} // namespace hollowfernpike::test
