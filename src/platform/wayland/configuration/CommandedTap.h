#pragma once

#include "platform/freedesktop/keyboard/Tap.h"

#include <cstddef>

namespace hollowfernpike::wayland {

/// An active tap where the compositor's own configuration binds the combinations, to commands of
/// ours: the presses come with these, never by the tap. Main thread only.
class CommandedTap final : public freedesktop::Tap {
public:
    CommandedTap() : Tap(nullptr, nullptr) {}
    CommandedTap(const CommandedTap&) = delete;
    CommandedTap& operator=(const CommandedTap&) = delete;
    ~CommandedTap() override { invalidate(); }

    void setInterest(std::span<const platform::KeyCombination> combinations) override;

private:
    void start() override;
    void stop() override {}

    std::size_t count_ = 0; ///< of combinations of interest
};

} // namespace hollowfernpike::wayland
