#include "platform/x11/GrabbedKeys.h"

#include "platform/x11/EventKinds.h"

#include <algorithm>

namespace hollowfernpike::x11 {

GrabbedKeys::GrabbedKeys(const Connection& connection) : grabs_(connection), rawKeys_(connection) {}

void GrabbedKeys::setInterest(std::span<const platform::KeyCombination> combinations) {
    interest_.assign(combinations.begin(), combinations.end());
    if (map_) {
        update();
    }
}

std::vector<platform::KeyCombination> GrabbedKeys::listenOnlyCombinations() const {
    return taken_;
}

void GrabbedKeys::start(const KeyboardMap& map) {
    map_ = map;
    update();
}

void GrabbedKeys::stop() {
    rawKeys_.stop();
    grabs_.release();
    taken_.clear();
    map_.reset();
}

std::optional<KeyPress> GrabbedKeys::read(const xcb_generic_event_t& event) {
    if (event.response_type == XCB_KEY_PRESS) {
        return readSwallowed(reinterpret_cast<const xcb_key_press_event_t&>(event));
    }
    const auto press = rawKeys_.read(event);
    return press ? readObserved(*press, event.full_sequence) : std::nullopt;
}

void GrabbedKeys::update() {
    taken_ = grabs_.update(*map_, interest_);
    if (taken_.empty()) {
        rawKeys_.stop();
    } else {
        rawKeys_.start();
    }
}

std::optional<KeyPress> GrabbedKeys::readSwallowed(const xcb_key_press_event_t& event) const {
    if (lastObserved_ && lastObserved_->state.key == event.detail &&
        lastObserved_->time == event.time) {
        return std::nullopt;
    }
    const auto state = static_cast<ModifierState>(event.state & 0xFFU);
    const auto keyEvent = map_->event({event.detail, state});
    return keyEvent ? std::optional{KeyPress{*keyEvent, event.time}} : std::nullopt;
}

// A press that is held as a grab comes once more as an event of the grab.
std::optional<KeyPress> GrabbedKeys::readObserved(const RawKeys::Press& press,
                                                  std::uint32_t sequence) {
    const auto combination = map_->combination(press.state);
    if (!combination || grabs_.held(press.state, sequence) ||
        std::ranges::find(interest_, *combination) == interest_.end()) {
        return std::nullopt;
    }
    const auto keyEvent = map_->event(press.state);
    lastObserved_ = press;
    update();
    return KeyPress{*keyEvent, press.time};
}

} // namespace hollowfernpike::x11
