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
        return readSwallowed(event);
    }
    const auto press = rawKeys_.read(event);
    return press ? readObserved(*press) : std::nullopt;
}

void GrabbedKeys::update() {
    taken_ = grabs_.update(*map_, interest_);
    if (taken_.empty()) {
        rawKeys_.stop();
    } else {
        rawKeys_.start();
    }
}

// While a combination is tried again, a part of it may be held for a moment before another part
// turns out to be taken: such a press comes both ways.
std::optional<KeyPress> GrabbedKeys::readSwallowed(const xcb_generic_event_t& event) const {
    const auto& core = reinterpret_cast<const xcb_key_press_event_t&>(event);
    const KeyState state{core.detail, static_cast<ModifierState>(core.state & 0xFFU)};
    if (RawKeys::Press{state, core.time, event.full_sequence} == lastObserved_) {
        return std::nullopt;
    }
    const auto keyEvent = map_->event(state);
    return keyEvent ? std::optional{KeyPress{*keyEvent, core.time}} : std::nullopt;
}

// A press that is held as a grab comes once more as an event of the grab.
std::optional<KeyPress> GrabbedKeys::readObserved(const RawKeys::Press& press) {
    const auto combination = map_->combination(press.state);
    if (!combination || grabs_.held(press.state, press.sequence) ||
        std::ranges::find(interest_, *combination) == interest_.end()) {
        return std::nullopt;
    }
    const auto keyEvent = map_->event(press.state);
    lastObserved_ = press;
    update();
    return KeyPress{*keyEvent, press.time};
}

} // namespace hollowfernpike::x11
