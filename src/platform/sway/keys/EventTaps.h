#pragma once

#include "platform/EventTap.h"
#include "platform/sway/keys/BindingTap.h"

namespace hollowfernpike::sway {

/// Active taps by sway's bindings, of which there may be one at a time; listen-only ones on our own
/// focused window. Main thread only.
class EventTaps final : public platform::EventTaps {
public:
    explicit EventTaps(const BindingTap::Services& services) : services_(services) {}

    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions options,
                                               platform::EventTapCallback callback,
                                               void* userInfo) override;

private:
    BindingTap::Services services_;
};

} // namespace hollowfernpike::sway
