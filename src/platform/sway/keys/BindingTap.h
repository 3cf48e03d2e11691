#pragma once

#include "platform/MainQueue.h"
#include "platform/RunLoop.h"
#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/sway/ipc/IpcClient.h"
#include "platform/sway/ipc/IpcEvents.h"
#include "platform/sway/keys/Bindings.h"
#include "platform/wayland/ActivationTokens.h"
#include "platform/wayland/keyboard/SeatKeyboard.h"

#include <chrono>
#include <optional>
#include <vector>

namespace hollowfernpike::sway {

/// An active tap by sway's key bindings. sway swallows a bound press, its key-up too, and reports
/// it once however long it is held.
///
/// When sway has read its configuration again, or the keyboard map changes what the user binds, it
/// reports itself disabled. If sway's socket fails, it tries again at once and then every five
/// seconds.
class BindingTap final : public freedesktop::Tap {
public:
    /// All outlive the tap.
    struct Services {
        platform::MainQueue& queue;
        platform::RunLoop& runLoop;
        IpcClient& ipc;
        wayland::SeatKeyboard& keyboard;
        wayland::ActivationTokens& presses;
    };

    BindingTap(const Services& services, platform::EventTapCallback callback, void* userInfo);
    BindingTap(const BindingTap&) = delete;
    BindingTap& operator=(const BindingTap&) = delete;
    ~BindingTap() override;

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> refusedCombinations() const override;

private:
    void start() override;
    void stop() override;
    void bind();
    void tryAgain(std::chrono::milliseconds delay);
    void handle(const IpcMessage& event);
    void onPressed(const platform::KeyCombination& combination);
    void onKeymapChange();

    Services services_;
    Bindings bindings_;
    std::optional<IpcEvents> events_;
    std::vector<platform::KeyCombination> interest_;
    bool isToTryAgain_ = false;
    std::chrono::steady_clock::time_point lastFailure_{};
};

} // namespace hollowfernpike::sway
