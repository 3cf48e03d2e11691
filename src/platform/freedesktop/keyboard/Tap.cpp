#include "platform/freedesktop/keyboard/Tap.h"

#include "platform/freedesktop/keyboard/KeyNames.h"

#include <utility>

namespace hollowfernpike::freedesktop {

class Tap::Source final : public platform::RunLoopSource {
public:
    explicit Source(std::weak_ptr<Tap*> tap) : tap_(std::move(tap)) {}
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

    std::weak_ptr<Tap*> tap_;
};

Tap::Tap(platform::EventTapCallback callback, void* userInfo)
    : callback_(callback), userInfo_(userInfo), self_(std::make_shared<Tap*>(this)) {}

void Tap::deliver(const platform::KeyEvent& press) {
    callback_(this, platform::eventKeyDown, &press, userInfo_);
}

void Tap::report(platform::EventType type) {
    callback_(this, type, nullptr, userInfo_);
}

void Tap::deliver(const platform::KeyCombination& combination) {
    deliver({.keyCode = combination.keyCode,
             .flags = platform::event_flags::nonCoalesced | keyFlags(combination.keyCode) |
                      combination.modifierFlags});
}

void Tap::reportRefused() {
    const auto refused = refusedCombinations();
    if (refused != std::exchange(reportedRefused_, refused)) {
        report(platform::eventTapDisabledByUserInput);
    }
}

void Tap::enable(bool enabled) {
    enabled_ = enabled;
    apply();
}

std::unique_ptr<platform::RunLoopSource> Tap::createRunLoopSource() {
    return std::make_unique<Source>(self_);
}

void Tap::invalidate() {
    enable(false);
    self_.reset();
    end();
}

void Tap::attach(bool attached) {
    if (std::exchange(attached_, attached) != attached) {
        apply();
    }
}

void Tap::apply() {
    if (enabled_ && attached_ && self_) {
        isLive_ = true;
        start();
    } else if (std::exchange(isLive_, false)) {
        stop();
    }
}

} // namespace hollowfernpike::freedesktop
