#pragma once

#include "platform/EventTap.h"
#include "platform/wayland/recorder/FocusedKeysTap.h"

#include <functional>
#include <memory>
#include <utility>

namespace hollowfernpike::wayland {

/// Active taps in the desktop's own way, of which there may be one at a time; listen-only ones on
/// our own focused window. Main thread only.
class EventTaps final : public platform::EventTaps {
public:
    /// Makes an active tap; null if the desktop refuses it.
    using MakeActive = std::function<std::unique_ptr<platform::EventTap>(
        platform::EventTapCallback callback, void* userInfo)>;

    explicit EventTaps(MakeActive makeActive) : makeActive_(std::move(makeActive)) {}

    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions options,
                                               platform::EventTapCallback callback,
                                               void* userInfo) override {
        if (options == platform::EventTapOptions::active) {
            return makeActive_(callback, userInfo);
        }
        return std::make_unique<FocusedKeysTap>(callback, userInfo);
    }

private:
    MakeActive makeActive_;
};

} // namespace hollowfernpike::wayland
