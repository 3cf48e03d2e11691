#pragma once

#include "platform/EventTap.h"
#include "platform/LaunchFeedback.h"
#include "platform/wayland/connection/Connection.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

struct xdg_activation_v1;

namespace hollowfernpike::wayland {

/// Launches by activation tokens (xdg-activation-v1): the compositor knows by a token which launch
/// a new window belongs to. There are no start-up notices to take back. Main thread only.
class ActivationTokens final : public platform::LaunchFeedback {
public:
    /// Counts how often a window has become active; empty where nobody tells.
    using Activations = std::function<std::uint64_t()>;

    /// The connection outlives this object.
    explicit ActivationTokens(Connection& connection, Activations activations = {});
    ActivationTokens(const ActivationTokens&) = delete;
    ActivationTokens& operator=(const ActivationTokens&) = delete;
    ~ActivationTokens() override;

    /// One round trip to the compositor, unless the press came with a token. Empty if the
    /// compositor gives none.
    std::string begin(const platform::StartingApplication& application) override;
    void end(const std::string& /*identifier*/) override {}

    /// A fresh token for a window of this application, no launch: one round trip. Empty if the
    /// compositor gives none.
    std::string request(const std::string& applicationId);

    /// sway does not show a new window before a fullscreen one. KWin remembers the latest token
    /// alone, and any program may have asked for another one before the window comes. If a window
    /// has become active since the latest launch began, it was the new one, or the user has moved
    /// on: then nothing is brought forward, at the cost of launches that something else disturbs.
    /// Where nobody tells of activations, a window that is noticed late comes forward all the same.
    bool mayOpenBehind() override { return !activations_ || activations_() == atLaunch_; }
    std::uint64_t holdCount() override { return presses_; }

    /// To be called by taps when the user has pressed a combination. `token` is what the desktop
    /// gave for what follows; the next launch gets it.
    void countPress(std::string token = {}) {
        ++presses_;
        givenToken_ = std::move(token);
    }

    /// The desktop may repeat the command while the keys are held: what follows within a second of
    /// the same press counts as a repeat. The next launch gets the token.
    void notePress(const platform::KeyCombination& combination, const std::string& token) override;

private:
    Connection& connection_;
    xdg_activation_v1* activation_;
    Activations activations_;
    std::uint64_t atLaunch_ = 0; ///< activations when the latest launch began
    std::uint64_t presses_ = 0;
    platform::KeyCombination lastCombination_;
    std::chrono::steady_clock::time_point lastCommand_{};
    std::string givenToken_;
};

} // namespace hollowfernpike::wayland
