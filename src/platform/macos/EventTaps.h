#pragma once

#include "platform/EventTap.h"

namespace hollowfernpike::macos {

/// Taps at the point where key presses enter the window server, before the taps that are there
/// already. What an active one swallows nobody behind it sees. The system tells of no combinations
/// that others hold.
class EventTaps final : public platform::EventTaps {
public:
    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions options,
                                               platform::EventTapCallback callback,
                                               void* userInfo) override;
};

} // namespace hollowfernpike::macos
