#pragma once

#include "platform/ProcessActivation.h"
#include "platform/x11/UserTime.h"
#include "platform/x11/Windows.h"

#include <array>
#include <cstdint>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Brings processes to the front by asking the window manager (EWMH), in the name of the user:
/// source indication 2 and the time of the key press. Main thread only.
class ProcessActivation final : public platform::ProcessActivation {
public:
    /// Both outlive this object.
    ProcessActivation(Windows& windows, const UserTime& userTime)
        : windows_(windows), userTime_(userTime) {}

    bool bringToFront(std::int32_t processIdentifier) override;

private:
    using MessageData = std::array<std::uint32_t, 5>;

    bool bringToFront(const Snapshot& snapshot, std::int32_t processIdentifier);
    void raise(const Snapshot& snapshot, xcb_window_t window);
    void send(xcb_window_t window, xcb_atom_t type, const MessageData& data);
    xcb_timestamp_t requestTime();

    Windows& windows_;
    const UserTime& userTime_;
};

} // namespace hollowfernpike::x11
