#pragma once

#include "desktop/sway/SwaySession.h"
#include "desktop/wayland/WaylandStory.h"

#include <memory>
#include <string>

namespace hollowfernpike::test {

/// A story that goes as it can on sway alone.
class SwayStory : public WaylandStory {
public:
    /// `configuration` are lines for sway's configuration file.
    explicit SwayStory(const std::string& configuration = {}, const KeyboardLayout& layout = {})
        : SwayStory(std::make_unique<SwaySession>(configuration, layout)) {}

    SwayDesktop& desktop;
    const SwayPager& sway;

private:
    explicit SwayStory(std::unique_ptr<SwaySession> place)
        : WaylandStory(std::move(place)), desktop(onSway().desktop), sway(onSway().swayPager) {}

    SwaySession& onSway() { return static_cast<SwaySession&>(session()); }
};

} // namespace hollowfernpike::test
