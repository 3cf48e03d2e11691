#pragma once

#include "platform/EventTap.h"
#include "support/fakes/CallLog.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

namespace hollowfernpike::test {

class FakeEventTaps;

/// A tap whose keyboard is the test.
class FakeEventTap final : public platform::EventTap {
public:
    FakeEventTap(FakeEventTaps& taps, platform::EventTapOptions options,
                 platform::EventTapCallback callback, void* userInfo);
    FakeEventTap(const FakeEventTap&) = delete;
    FakeEventTap& operator=(const FakeEventTap&) = delete;
    ~FakeEventTap() override;

    void enable(bool enabled) override;
    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override;
    std::vector<platform::KeyCombination> refusedCombinations() const override;
    std::unique_ptr<platform::RunLoopSource> createRunLoopSource() override;
    void invalidate() override;

    platform::EventTapOptions options() const { return options_; }
    void* userInfo() const { return userInfo_; }
    bool isEnabled() const { return isEnabled_; }
    bool isAttached() const { return isAttached_; }
    const std::vector<platform::KeyCombination>& interest() const { return interest_; }

    /// Presses a key. True if the application in front receives it.
    bool press(std::int64_t keyCode, std::uint64_t flags);

    /// Hands any event to the callback, as it is, and returns the answer.
    const platform::KeyEvent* deliver(platform::EventType type, const platform::KeyEvent* event);

    /// Switches the tap off from outside and says so to the callback.
    void disableFromOutside(platform::EventType reason);

private:
    class Source;

    FakeEventTaps& taps_;
    platform::EventTapOptions options_;
    platform::EventTapCallback callback_;
    void* userInfo_;
    bool isEnabled_ = false;
    bool isAttached_ = false;
    std::vector<platform::KeyCombination> interest_;
};

/// Makes taps, or refuses to.
class FakeEventTaps final : public platform::EventTaps {
public:
    explicit FakeEventTaps(CallLog& callLog) : log(callLog) {}

    CallLog& log;
    bool refusesActive = false;
    bool refusesListenOnly = false;
    std::vector<platform::KeyCombination> refused; ///< by every tap
    std::vector<platform::KeyCombination> shared;  ///< with other programs, if of interest

    /// The tap made last, null if it is gone or none was made.
    FakeEventTap* tap() const { return tap_; }

    std::unique_ptr<platform::EventTap> create(platform::EventTapOptions options,
                                               platform::EventTapCallback callback,
                                               void* userInfo) override {
        const bool isActive = options == platform::EventTapOptions::active;
        log.record(isActive ? "eventTaps.create active" : "eventTaps.create listenOnly");
        if (isActive ? refusesActive : refusesListenOnly) {
            return nullptr;
        }
        auto made = std::make_unique<FakeEventTap>(*this, options, callback, userInfo);
        tap_ = made.get();
        return made;
    }

private:
    friend class FakeEventTap;

    FakeEventTap* tap_ = nullptr;
};

class FakeEventTap::Source final : public platform::RunLoopSource {
public:
    explicit Source(FakeEventTap& tap) : tap_(tap) {}
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    ~Source() override { tap_.isAttached_ = false; }

    void addToMainRunLoop() override {
        tap_.taps_.log.record("runLoopSource.addToMainRunLoop");
        tap_.isAttached_ = true;
    }

    void removeFromMainRunLoop() override {
        tap_.taps_.log.record("runLoopSource.removeFromMainRunLoop");
        tap_.isAttached_ = false;
    }

private:
    FakeEventTap& tap_;
};

inline FakeEventTap::FakeEventTap(FakeEventTaps& taps, platform::EventTapOptions options,
                                  platform::EventTapCallback callback, void* userInfo)
    : taps_(taps), options_(options), callback_(callback), userInfo_(userInfo) {}

inline FakeEventTap::~FakeEventTap() {
    if (taps_.tap_ == this) {
        taps_.tap_ = nullptr;
    }
}

inline void FakeEventTap::enable(bool enabled) {
    taps_.log.record(enabled ? "eventTap.enable true" : "eventTap.enable false");
    isEnabled_ = enabled;
}

inline void FakeEventTap::setInterest(std::span<const platform::KeyCombination> combinations) {
    taps_.log.record("eventTap.setInterest " + std::to_string(combinations.size()));
    interest_.assign(combinations.begin(), combinations.end());
}

inline std::unique_ptr<platform::RunLoopSource> FakeEventTap::createRunLoopSource() {
    taps_.log.record("eventTap.createRunLoopSource");
    return std::make_unique<Source>(*this);
}

inline std::vector<platform::KeyCombination> FakeEventTap::refusedCombinations() const {
    return isEnabled_ ? taps_.refused : std::vector<platform::KeyCombination>{};
}

inline std::vector<platform::KeyCombination> FakeEventTap::listenOnlyCombinations() const {
    std::vector<platform::KeyCombination> found;
    std::ranges::copy_if(taps_.shared, std::back_inserter(found), [this](const auto& combination) {
        return isEnabled_ && std::ranges::find(interest_, combination) != interest_.end();
    });
    return found;
}

inline void FakeEventTap::invalidate() {
    taps_.log.record("eventTap.invalidate");
    isEnabled_ = false;
}

inline bool FakeEventTap::press(std::int64_t keyCode, std::uint64_t flags) {
    const platform::KeyEvent event{.keyCode = keyCode, .flags = flags};
    const bool isSeen = isEnabled_ && isAttached_;
    const bool isPassed = !isSeen || deliver(platform::eventKeyDown, &event) != nullptr;
    return isPassed || options_ == platform::EventTapOptions::listenOnly;
}

inline const platform::KeyEvent* FakeEventTap::deliver(platform::EventType type,
                                                       const platform::KeyEvent* event) {
    return callback_(this, type, event, userInfo_);
}

inline void FakeEventTap::disableFromOutside(platform::EventType reason) {
    isEnabled_ = false;
    deliver(reason, nullptr);
}

} // namespace hollowfernpike::test
