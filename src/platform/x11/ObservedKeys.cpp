#include "platform/x11/ObservedKeys.h"

namespace hollowfernpike::x11 {

ObservedKeys::ObservedKeys(const Connection& connection) : rawKeys_(connection) {}

void ObservedKeys::setInterest(std::span<const platform::KeyCombination>) {}

std::vector<platform::KeyCombination> ObservedKeys::listenOnlyCombinations() const {
    return {};
}

void ObservedKeys::start(const KeyboardMap& map) {
    map_ = map;
    rawKeys_.start();
}

void ObservedKeys::stop() {
    rawKeys_.stop();
}

std::optional<KeyPress> ObservedKeys::read(const xcb_generic_event_t& event) {
    const auto press = rawKeys_.read(event);
    const auto keyEvent = press ? map_->event(press->state) : std::nullopt;
    return keyEvent ? std::optional{KeyPress{*keyEvent, press->time}} : std::nullopt;
}

} // namespace hollowfernpike::x11
