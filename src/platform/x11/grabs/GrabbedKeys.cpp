#include "platform/x11/grabs/GrabbedKeys.h"

#include "platform/freedesktop/Logging.h"
#include "platform/x11/taps/EventKinds.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace hollowfernpike::x11 {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t mostObserved = 16;

/// When to ask again about the Super key. A starting desktop grabs that key late (Cinnamon some
/// seconds after it begins to manage windows), and no event tells of it.
constexpr std::array<std::chrono::milliseconds, 3> laterOn{1s, 5s, 20s};

/// Longer than the first of these delays, so that we have asked again before the doubt ends.
constexpr auto longestDoubt = 5s;

void logShared(const std::vector<platform::KeyCombination>& combinations) {
    for (const auto& combination : combinations) {
        qCDebug(freedesktop::keysLog,
                "key %d with flags %#llx is only observed: another client holds it",
                int{combination.keyCode},
                static_cast<unsigned long long>(combination.modifierFlags));
    }
}

bool isWithSuper(const platform::KeyCombination& combination) {
    return (combination.modifierFlags & platform::event_flags::command) != 0;
}

} // namespace

GrabbedKeys::GrabbedKeys(const Connection& connection, platform::MainQueue& queue,
                         std::function<bool()> isScreenLocked)
    : connection_(connection), queue_(queue),
      windowManager_(connection.get(), "WM_S", connection.screenNumber()), grabs_(connection),
      rawKeys_(connection, std::move(isScreenLocked)) {}

void GrabbedKeys::setInterest(std::span<const platform::KeyCombination> combinations) {
    interest_.assign(combinations.begin(), combinations.end());
    if (map_) {
        update();
    }
}

std::vector<platform::KeyCombination> GrabbedKeys::listenOnlyCombinations() const {
    return shared_;
}

void GrabbedKeys::start(const KeyboardMap& map) {
    const bool isFirst = !std::exchange(map_, map);
    update();
    if (isFirst) {
        selectRootEvents();
    }
}

void GrabbedKeys::stop() {
    map_.reset();
    windows_.reset();
    doubt_.reset();
    isSuperOfInterest_ = false;
    loneSuperKey_ = LoneSuperKey::free;
    selectRootEvents();
    rawKeys_.stop();
    grabs_.release();
    shared_.clear();
}

std::optional<KeyPress> GrabbedKeys::read(const xcb_generic_event_t& event) {
    if (event.response_type == XCB_KEY_PRESS) {
        return readSwallowed(event);
    }
    if (windows_ && windows_->isChange(event)) {
        grabs_.setWindows(windows_->read());
    } else if (isSuperOfInterest_ && windowManager_.isAnnouncedBy(event)) {
        askAgainLater();
    }
    const auto press = rawKeys_.read(event);
    return press ? readObserved(*press) : std::nullopt;
}

void GrabbedKeys::update() {
    followLoneSuperKey();
    const auto before = std::exchange(shared_, grabs_.update(*map_, interest_));
    for (const auto& combination : interest_) {
        if (passesByGrabs(combination) &&
            std::ranges::find(shared_, combination) == shared_.end()) {
            shared_.push_back(combination);
        }
    }
    if (shared_ != before) {
        logShared(shared_);
    }
    if (shared_.empty()) {
        rawKeys_.stop();
    } else {
        rawKeys_.start();
    }
}

void GrabbedKeys::updateAndTell() {
    const auto before = shared_;
    update();
    if (shared_ != before && onListenOnlyChange) {
        onListenOnlyChange();
    }
}

void GrabbedKeys::selectRootEvents() {
    const std::uint32_t events = (map_ ? XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0) |
                                 (windows_ ? FocusableWindows::rootEvents : 0);
    xcb_change_window_attributes(connection_.get(), connection_.root(), XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection_.get());
}

void GrabbedKeys::followLoneSuperKey() {
    const bool wasOfInterest =
        std::exchange(isSuperOfInterest_, std::ranges::any_of(interest_, isWithSuper));
    if (isSuperOfInterest_ && !wasOfInterest) {
        askAgainLater();
    }
    loneSuperKey_ = isSuperOfInterest_ ? askForLoneSuperKey() : LoneSuperKey::free;
    const bool isFollowed = loneSuperKey_ != LoneSuperKey::free;
    if (isFollowed != windows_.has_value()) {
        windows_.reset();
        if (isFollowed) {
            windows_.emplace(connection_);
        }
        selectRootEvents();
    }
    grabs_.setWindows(windows_ ? windows_->read() : Focusable{});
    if (loneSuperKey_ == LoneSuperKey::unguarded) {
        rawKeys_.start();
    }
}

// When the keyboard changes, the holder of the key releases it and grabs it anew, and we may ask in
// between, several times in a burst of changes. So the key counts as free only after it has looked
// free for `longestDoubt`.
LoneSuperKey GrabbedKeys::askForLoneSuperKey() {
    const auto found = loneSuperKey(connection_, map_->superKeys());
    if (found != LoneSuperKey::free || loneSuperKey_ == LoneSuperKey::free) {
        doubt_.reset();
        return found;
    }
    if (!doubt_) {
        beginDoubt();
    }
    return loneSuperKey_;
}

void GrabbedKeys::beginDoubt() {
    doubt_ = std::make_shared<GrabbedKeys*>(this);
    askAgainLater();
    queue_.asyncAfter(longestDoubt, [doubt = std::weak_ptr(doubt_)] {
        if (const auto keys = doubt.lock()) {
            (*keys)->loneSuperKey_ = LoneSuperKey::free;
            (*keys)->updateAndTell();
        }
    });
}

void GrabbedKeys::askAgainLater() {
    for (const auto delay : laterOn) {
        queue_.asyncAfter(delay, [self = std::weak_ptr(self_)] {
            const auto keys = self.lock();
            if (keys && (*keys)->map_) {
                (*keys)->updateAndTell();
            }
        });
    }
}

bool GrabbedKeys::passesByGrabs(const platform::KeyCombination& combination) const {
    return loneSuperKey_ == LoneSuperKey::unguarded && isWithSuper(combination);
}

std::optional<KeyPress> GrabbedKeys::readSwallowed(const xcb_generic_event_t& event) {
    const auto& core = reinterpret_cast<const xcb_key_press_event_t&>(event);
    const KeyState state{core.detail, static_cast<freedesktop::ModifierState>(core.state & 0xFFU)};
    if (wasObserved({state, core.time, event.full_sequence})) {
        return std::nullopt;
    }
    const auto keyEvent = map_->event(state);
    return keyEvent ? std::optional{KeyPress{*keyEvent, core.time}} : std::nullopt;
}

std::optional<KeyPress> GrabbedKeys::readObserved(const RawKeys::Press& press) {
    const auto combination = map_->combination(press.state);
    if (!combination || std::ranges::find(interest_, *combination) == interest_.end()) {
        return std::nullopt;
    }
    const bool isReplayed = passesByGrabs(*combination);
    if (!isReplayed && grabs_.held(press.state, press.sequence)) {
        return std::nullopt; // comes as an event of the grab
    }
    const auto keyEvent = map_->event(press.state);
    observed_.push_back({press, isReplayed});
    if (observed_.size() > mostObserved) {
        observed_.pop_front();
    }
    updateAndTell();
    return KeyPress{*keyEvent, press.time};
}

// An observed press may arrive from a grab as well. While a combination is tried again, some of its
// presses are held for a moment, until another is refused; and a press that passes by the grabs on
// the root may be caught by a grab on a window.
bool GrabbedKeys::wasObserved(const RawKeys::Press& press) {
    const auto found = std::ranges::find_if(observed_, [&](const Observed& observed) {
        return observed.press.state == press.state && observed.press.time == press.time &&
               (observed.isReplayed || observed.press.sequence == press.sequence);
    });
    const bool isFound = found != observed_.end();
    if (isFound) {
        observed_.erase(found);
    }
    return isFound;
}

} // namespace hollowfernpike::x11
