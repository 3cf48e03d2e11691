#pragma once

#include "platform/EventTap.h"
#include "platform/MainQueue.h"
#include "platform/x11/taps/KeyboardFocus.h"
#include "platform/x11/taps/UserTime.h"

#include <functional>
#include <string>
#include <utility>

namespace hollowfernpike::x11 {

/// Taps on an X display. An active tap grabs the combinations of interest; a listen-only tap sees
/// every key press while a window of ours has the keyboard focus, grabbed or not, but no repeats.
/// Neither reports modifier keys.
class EventTaps final : public platform::EventTaps {
public:
    /// The queue and the user time must outlive this object and its taps. The display is that of
    /// the environment if the name is empty. `onConnectionLost` is called on the main thread when
    /// the server of some tap goes away, once however many taps there are. `isScreenLocked`: as
    /// in RawKeys.
    EventTaps(platform::MainQueue& queue, UserTime& userTime, std::string displayName = {},
              std::function<void()> onConnectionLost = {},
              std::function<bool()> isScreenLocked = {});

    /// Tells listen-only taps which windows of the display are ours, from the next tap on. They see
    /// only what is typed into these. Until this is called all windows count as ours.
    void setOwnWindows(KeyboardFocus::IsOurs isOurs) { isOurs_ = std::move(isOurs); }

    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions options,
                                               platform::EventTapCallback callback,
                                               void* userInfo) override;

private:
    platform::MainQueue& queue_;
    UserTime& userTime_;
    std::string displayName_;
    std::function<void()> connectionLost_;
    std::function<bool()> isScreenLocked_;
    KeyboardFocus::IsOurs isOurs_ = [](xcb_window_t) { return true; };
};

} // namespace hollowfernpike::x11
