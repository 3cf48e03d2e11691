#include "platform/x11/taps/KeyTap.h"

#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"

#include <utility>

namespace hollowfernpike::x11 {

namespace {

/// setxkbmap sends three events within 15 ms; 40 ms coalesces them and stays unnoticed.
constexpr std::chrono::milliseconds settleTime{40};

} // namespace

KeyTap::KeyTap(Services services, std::unique_ptr<Connection> connection,
               std::unique_ptr<KeySource> source, platform::EventTapCallback callback,
               void* userInfo)
    : Tap(callback, userInfo), services_(std::move(services)), connection_(std::move(connection)),
      source_(std::move(source)), thread_(std::make_unique<EventThread>(*connection_, receiver())) {
    source_->onListenOnlyChange = [this] { reportChange(); };
}

KeyTap::~KeyTap() {
    invalidate();
}

void KeyTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    if (source_) {
        source_->setInterest(combinations);
    }
}

std::vector<platform::KeyCombination> KeyTap::listenOnlyCombinations() const {
    return isLive() ? source_->listenOnlyCombinations() : std::vector<platform::KeyCombination>{};
}

EventThread::Receiver KeyTap::receiver() {
    auto& queue = services_.queue;
    return {
        .event =
            [this, &queue, life = life()](std::shared_ptr<const xcb_generic_event_t> event) {
                queue.async([this, life, event = std::move(event)] {
                    if (life.lock()) {
                        handle(*event);
                    }
                });
            },
        .lost = [&queue, lost = services_.connectionLost] { queue.async(lost); },
    };
}

void KeyTap::start() {
    if (!liveSince_) {
        liveSince_ = xcb_no_operation(connection_->get()).sequence;
    }
    if (const auto description = KeyboardDescription::read(*connection_)) {
        services_.userTime.setRepetition(description->longestRepetition);
        source_->start(KeyboardMap{*description});
    }
}

void KeyTap::stop() {
    liveSince_.reset();
    source_->stop();
}

void KeyTap::end() {
    thread_.reset();
    source_.reset();
    connection_.reset();
}

// The callback may destroy this tap, so no member may be used after take().
void KeyTap::handle(const xcb_generic_event_t& event) {
    if (!liveSince_ || isBefore(event.full_sequence, *liveSince_)) {
        return;
    }
    if (isKeyboardChange(*connection_, event)) {
        reportChange();
    } else if (const auto press = source_->read(event)) {
        take(*press);
    } else if (source_->hasLostFocus()) {
        report(platform::eventTapFocusLost);
    }
}

void KeyTap::take(const KeyPress& press) {
    services_.userTime.record(press.time, {static_cast<std::uint16_t>(press.event.keyCode),
                                           press.event.flags & freedesktop::shortcutModifiers});
    deliver(press.event);
}

void KeyTap::reportChange() {
    services_.queue.asyncAfter(settleTime, [this, life = life(), changes = ++changes_] {
        if (life.lock() && isLive() && changes_ == changes) {
            report(platform::eventTapDisabledByUserInput);
        }
    });
}

} // namespace hollowfernpike::x11
