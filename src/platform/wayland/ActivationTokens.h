#pragma once

#include "platform/LaunchFeedback.h"
#include "platform/wayland/connection/Connection.h"

#include <cstdint>
#include <string>

struct xdg_activation_v1;

namespace hollowfernpike::wayland {

/// Launches by activation tokens (xdg-activation-v1): the compositor knows by a token which launch
/// a new window belongs to. There are no start-up notices to take back. Main thread only.
class ActivationTokens final : public platform::LaunchFeedback {
public:
    /// What the compositor does with the first window of a launch while another one is fullscreen.
    enum class NewWindows : bool { stayBehindFullscreen, comeForward };

    /// The connection outlives this object.
    explicit ActivationTokens(Connection& connection,
                              NewWindows newWindows = NewWindows::stayBehindFullscreen);
    ActivationTokens(const ActivationTokens&) = delete;
    ActivationTokens& operator=(const ActivationTokens&) = delete;
    ~ActivationTokens() override;

    /// One round trip to the compositor. Empty if it gives no tokens.
    std::string begin(const platform::StartingApplication& application) override;
    void end(const std::string& /*identifier*/) override {}

    bool mayOpenBehind() override { return newWindows_ == NewWindows::stayBehindFullscreen; }
    std::uint64_t holdCount() override { return presses_; }

    /// To be called by taps when the user has pressed a combination.
    void countPress() { ++presses_; }

private:
    Connection& connection_;
    NewWindows newWindows_;
    xdg_activation_v1* activation_;
    std::uint64_t presses_ = 0;
};

} // namespace hollowfernpike::wayland
