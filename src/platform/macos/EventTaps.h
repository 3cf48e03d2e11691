#pragma once

#include "platform/EventTap.h"

namespace hollowfernpike::macos {

/// Taps at the point where key presses enter the window server, before all other taps. They see
/// every key; what an active one swallows nobody else sees. The system has no combinations that it
/// keeps from them or shares with others.
class EventTaps final : public platform::EventTaps {
public:
    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions options,
                                               platform::EventTapCallback callback,
                                               void* userInfo) override;
};

} // namespace hollowfernpike::macos
