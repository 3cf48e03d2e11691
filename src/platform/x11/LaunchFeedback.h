#pragma once

#include "platform/LaunchFeedback.h"
#include "platform/x11/taps/UserTime.h"
#include "platform/x11/windows/Windows.h"

#include <cstdint>
#include <string>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Start-up notices by the freedesktop.org protocol. Main thread only.
class LaunchFeedback final : public platform::LaunchFeedback {
public:
    /// Both outlive this object. Sends nothing while `windows` has no connection.
    LaunchFeedback(Windows& windows, const UserTime& userTime);
    LaunchFeedback(const LaunchFeedback&) = delete;
    LaunchFeedback& operator=(const LaunchFeedback&) = delete;
    ~LaunchFeedback() override;

    std::string begin(const platform::StartingApplication& application) override;
    void end(const std::string& identifier) override;
    bool mayOpenBehind() override { return false; }
    std::uint64_t holdCount() override { return userTime_.hold(); }

private:
    void broadcast(const WindowReader& windows, const std::string& message);
    std::string newIdentifier();

    Windows& windows_;
    const UserTime& userTime_;
    std::string prefix_; ///< of all identifiers that this object gives out
    std::uint64_t count_ = 0;
    xcb_window_t sender_ = XCB_NONE; ///< made with the first message
};

} // namespace hollowfernpike::x11
