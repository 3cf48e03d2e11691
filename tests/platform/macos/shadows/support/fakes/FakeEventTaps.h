#pragma once

#include "platform/macos/EventTaps.h"
#include "platform/macos/fakes/FakeMac.h"
#include "support/fakes/CallLog.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

class FakeEventTaps;

/// A tap of the backend's, whose keyboard is the test.
class FakeEventTap final : public platform::EventTap {
public:
    FakeEventTap(FakeEventTaps& taps, std::unique_ptr<platform::EventTap> backend, void* userInfo);
    FakeEventTap(const FakeEventTap&) = delete;
    FakeEventTap& operator=(const FakeEventTap&) = delete;
    ~FakeEventTap() override;

    void enable(bool enabled) override;
    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override {
        return backend_->listenOnlyCombinations();
    }
    std::vector<platform::KeyCombination> refusedCombinations() const override {
        return backend_->refusedCombinations();
    }
    std::unique_ptr<platform::RunLoopSource> createRunLoopSource() override;
    void invalidate() override;

    platform::EventTapOptions options() const {
        return static_cast<platform::EventTapOptions>(system().options);
    }
    void* userInfo() const { return userInfo_; }
    bool isEnabled() const { return system().isEnabled; }
    bool isAttached() const { return system().modes.contains("common"); }
    const std::vector<platform::KeyCombination>& interest() const { return interest_; }

    /// Presses a key. True if the application in front receives it.
    bool press(std::int64_t keyCode, std::uint64_t flags) {
        return FakeMac::shared().press(system(), keyCode, flags);
    }

    /// Hands any event to the callback, as it is, and returns the answer.
    const platform::KeyEvent* deliver(platform::EventType type, const platform::KeyEvent* event) {
        const MacEvent sent =
            event == nullptr ? MacEvent{}
                             : MacEvent{.fields = {{9, event->keyCode}}, .flags = event->flags};
        return FakeMac::deliver(system(), type, sent) ? event : nullptr;
    }

    /// Switches the tap off from outside and says so to the callback.
    void disableFromOutside(platform::EventType reason) {
        system().isEnabled = false;
        deliver(reason, nullptr);
    }

private:
    class Source;

    MacTap& system() const { return *system_; }

    FakeEventTaps& taps_;
    MacTap* system_ = FakeMac::shared().taps.back();
    std::unique_ptr<platform::EventTap> backend_;
    void* userInfo_;
    std::vector<platform::KeyCombination> interest_;
};

/// Has the backend make taps, or the system refuse them.
class FakeEventTaps final : public platform::EventTaps {
public:
    explicit FakeEventTaps(CallLog& callLog) : log(callLog) {}

    CallLog& log;
    bool& refusesActive = FakeMac::shared().refusesActive;
    bool& refusesListenOnly = FakeMac::shared().refusesListenOnly;

    /// Not for this backend, whose taps see and swallow every key.
    std::vector<platform::KeyCombination> refused;
    std::vector<platform::KeyCombination> shared;

    /// The tap made last, null if it is gone or none was made.
    FakeEventTap* tap() const { return tap_; }

    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions options,
                                               platform::EventTapCallback callback,
                                               void* userInfo) override {
        const bool isActive = options == platform::EventTapOptions::active;
        log.record(isActive ? "eventTaps.create active" : "eventTaps.create listenOnly");
        auto tap = backend_.create(options, callback, userInfo);
        if (!tap) {
            return nullptr;
        }
        auto made = std::make_unique<FakeEventTap>(*this, std::move(tap), userInfo);
        tap_ = made.get();
        return made;
    }

private:
    friend class FakeEventTap;

    macos::EventTaps backend_;
    FakeEventTap* tap_ = nullptr;
};

class FakeEventTap::Source final : public platform::RunLoopSource {
public:
    Source(FakeEventTaps& taps, std::unique_ptr<platform::RunLoopSource> backend)
        : taps_(taps), backend_(std::move(backend)) {}

    void addToMainRunLoop() override {
        taps_.log.record("runLoopSource.addToMainRunLoop");
        backend_->addToMainRunLoop();
    }

    void removeFromMainRunLoop() override {
        taps_.log.record("runLoopSource.removeFromMainRunLoop");
        backend_->removeFromMainRunLoop();
    }

private:
    FakeEventTaps& taps_;
    std::unique_ptr<platform::RunLoopSource> backend_;
};

inline FakeEventTap::FakeEventTap(FakeEventTaps& taps, std::unique_ptr<platform::EventTap> backend,
                                  void* userInfo)
    : taps_(taps), backend_(std::move(backend)), userInfo_(userInfo) {}

inline FakeEventTap::~FakeEventTap() {
    if (taps_.tap_ == this) {
        taps_.tap_ = nullptr;
    }
}

inline void FakeEventTap::enable(bool enabled) {
    taps_.log.record(enabled ? "eventTap.enable true" : "eventTap.enable false");
    backend_->enable(enabled);
}

inline void FakeEventTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    taps_.log.record("eventTap.setInterest " + std::to_string(combinations.size()));
    interest_.assign(combinations.begin(), combinations.end());
    backend_->setInterest(combinations);
}

inline std::unique_ptr<platform::RunLoopSource> FakeEventTap::createRunLoopSource() {
    taps_.log.record("eventTap.createRunLoopSource");
    return std::make_unique<Source>(taps_, backend_->createRunLoopSource());
}

inline void FakeEventTap::invalidate() {
    taps_.log.record("eventTap.invalidate");
    backend_->invalidate();
}

} // namespace hollowfernpike::test
