#pragma once

#include "desktop/sway/SwayStory.h"
#include "desktop/wayland/KeyboardUserOnWayland.h"

#include <memory>

namespace hollowfernpike::test {

/// Somebody at the utility's windows on sway.
class KeyboardUserOnSway : public KeyboardUserOnWayland {
public:
    KeyboardUserOnSway() : KeyboardUserOnWayland(japaneseWords, std::make_unique<SwayStory>()) {}

    SwayStory& onSway = static_cast<SwayStory&>(story);
};

} // namespace hollowfernpike::test
