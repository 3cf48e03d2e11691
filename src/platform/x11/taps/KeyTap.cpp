#include "platform/x11/taps/KeyTap.h"

#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"

#include <utility>

namespace hollowfernpike::x11 {

namespace {

/// setxkbmap sends three events within 15 ms; 40 ms coalesces them and stays unnoticed.
constexpr std::chrono::milliseconds settleTime{40};

} // namespace

class KeyTap::Source final : public platform::RunLoopSource {
public:
    explicit Source(Self tap) : tap_(std::move(tap)) {}
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    ~Source() override { attach(false); }

    void addToMainRunLoop() override { attach(true); }
    void removeFromMainRunLoop() override { attach(false); }

private:
    void attach(bool attached) {
        if (const auto tap = tap_.lock()) {
            (*tap)->attach(attached);
        }
    }

    Self tap_;
};

KeyTap::KeyTap(Services services, std::unique_ptr<Connection> connection,
               std::unique_ptr<KeySource> source, Listener listener)
    : services_(std::move(services)), listener_(listener), self_(std::make_shared<KeyTap*>(this)),
      connection_(std::move(connection)), source_(std::move(source)),
      thread_(std::make_unique<EventThread>(*connection_, receiver())) {}

KeyTap::~KeyTap() {
    invalidate();
}

void KeyTap::enable(bool enabled) {
    enabled_ = enabled;
    apply();
}

void KeyTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    if (source_) {
        source_->setInterest(combinations);
    }
}

std::vector<platform::KeyCombination> KeyTap::listenOnlyCombinations() const {
    return live_ ? source_->listenOnlyCombinations() : std::vector<platform::KeyCombination>{};
}

std::unique_ptr<platform::RunLoopSource> KeyTap::createRunLoopSource() {
    return std::make_unique<Source>(self_);
}

void KeyTap::invalidate() {
    enable(false);
    self_.reset();
    thread_.reset();
    source_.reset();
    connection_.reset();
}

EventThread::Receiver KeyTap::receiver() {
    auto& queue = services_.queue;
    return {
        .event =
            [&queue, self = Self{self_}](std::shared_ptr<const xcb_generic_event_t> event) {
                queue.async([self, event = std::move(event)] {
                    if (const auto tap = self.lock()) {
                        (*tap)->handle(*event);
                    }
                });
            },
        .lost = [&queue, lost = services_.connectionLost] { queue.async(lost); },
    };
}

void KeyTap::attach(bool attached) {
    if (attached_ != attached) {
        attached_ = attached;
        apply();
    }
}

void KeyTap::apply() {
    const bool wanted = enabled_ && attached_ && connection_;
    if (wanted) {
        start();
    } else if (live_) {
        live_ = false;
        source_->stop();
    }
}

void KeyTap::start() {
    if (!live_) {
        live_ = true;
        liveSince_ = xcb_no_operation(connection_->get()).sequence;
    }
    if (const auto description = KeyboardDescription::read(*connection_)) {
        services_.userTime.setRepetition(description->longestRepetition);
        source_->start(KeyboardMap{*description});
    }
}

// The callback may destroy this tap, so no member may be used after deliver().
void KeyTap::handle(const xcb_generic_event_t& event) {
    if (!live_ || isBefore(event.full_sequence, liveSince_)) {
        return;
    }
    if (isKeyboardChange(*connection_, event)) {
        reportKeyboardChange();
    } else if (const auto press = source_->read(event)) {
        deliver(*press);
    }
}

void KeyTap::deliver(const KeyPress& press) {
    services_.userTime.record(press.time, {static_cast<std::uint16_t>(press.event.keyCode),
                                           press.event.flags & freedesktop::shortcutModifiers});
    listener_.callback(this, platform::eventKeyDown, &press.event, listener_.userInfo);
}

void KeyTap::reportKeyboardChange() {
    services_.queue.asyncAfter(settleTime, [self = Self{self_}, changes = ++keyboardChanges_] {
        const auto tap = self.lock();
        if (tap && (*tap)->live_ && (*tap)->keyboardChanges_ == changes) {
            (*tap)->listener_.callback(*tap, platform::eventTapDisabledByUserInput, nullptr,
                                       (*tap)->listener_.userInfo);
        }
    });
}

} // namespace hollowfernpike::x11
