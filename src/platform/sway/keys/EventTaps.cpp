#include "platform/sway/keys/EventTaps.h"

#include "platform/wayland/recorder/FocusedKeysTap.h"

namespace hollowfernpike::sway {

std::unique_ptr<platform::EventTap> EventTaps::create(platform::EventTapOptions options,
                                                      platform::EventTapCallback callback,
                                                      void* userInfo) {
    if (options == platform::EventTapOptions::active) {
        return std::make_unique<BindingTap>(services_, callback, userInfo);
    }
    return std::make_unique<wayland::FocusedKeysTap>(callback, userInfo);
}

} // namespace hollowfernpike::sway
