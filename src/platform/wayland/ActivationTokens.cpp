#include "platform/wayland/ActivationTokens.h"

#include <utility>

#include <xdg-activation-v1-client-protocol.h>

namespace hollowfernpike::wayland {

ActivationTokens::ActivationTokens(Connection& connection, Activations activations)
    : connection_(connection),
      activation_(connection.bind<xdg_activation_v1>(xdg_activation_v1_interface, 1)),
      activations_(std::move(activations)) {}

ActivationTokens::~ActivationTokens() {
    if (activation_ != nullptr) {
        xdg_activation_v1_destroy(activation_);
    }
}

std::string ActivationTokens::begin(const platform::StartingApplication& application) {
    auto token = std::exchange(givenToken_, {});
    if (token.empty()) {
        token = request(application.bundleIdentifier);
    }
    atLaunch_ = activations_ ? activations_() : 0;
    return token;
}

std::string ActivationTokens::request(const std::string& applicationId) {
    static constexpr xdg_activation_token_v1_listener listener{
        .done = [](void* text, xdg_activation_token_v1*,
                   const char* token) { *static_cast<std::string*>(text) = token; },
    };
    if (activation_ == nullptr) {
        return {};
    }
    std::string text;
    auto* const token = xdg_activation_v1_get_activation_token(activation_);
    xdg_activation_token_v1_add_listener(token, &listener, &text);
    xdg_activation_token_v1_set_app_id(token, applicationId.c_str());
    xdg_activation_token_v1_commit(token);
    connection_.dispatchUntil([&text] { return !text.empty(); });
    xdg_activation_token_v1_destroy(token);
    return text;
}

void ActivationTokens::notePress(const platform::KeyCombination& combination,
                                 const std::string& token) {
    constexpr std::chrono::seconds longestPause{1};
    const auto now = std::chrono::steady_clock::now();
    const bool repeats = combination == lastCombination_ && now - lastCommand_ <= longestPause;
    presses_ += repeats && presses_ > 0 ? 0 : 1;
    lastCombination_ = combination;
    lastCommand_ = now;
    givenToken_ = token;
}

} // namespace hollowfernpike::wayland
