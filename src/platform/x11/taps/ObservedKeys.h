#pragma once

#include "platform/x11/taps/KeySource.h"
#include "platform/x11/taps/RawKeys.h"

namespace hollowfernpike::x11 {

/// Every key press of the desktop, taken from nobody: the source of a listen-only tap.
class ObservedKeys final : public KeySource {
public:
    explicit ObservedKeys(const Connection& connection);

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override;
    void start(const KeyboardMap& map) override;
    void stop() override;
    std::optional<KeyPress> read(const xcb_generic_event_t& event) override;

private:
    RawKeys rawKeys_;
    std::optional<KeyboardMap> map_;
};

} // namespace hollowfernpike::x11
