#include "platform/macos/EventTaps.h"

#include "platform/macos/Ref.h"

#include <ApplicationServices/ApplicationServices.h>

namespace hollowfernpike::macos {

namespace {

class Source final : public platform::RunLoopSource {
public:
    explicit Source(CFMachPortRef port)
        : source_(Ref<CFRunLoopSourceRef>::owned(
              CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port, 0))) {}

    // In the common modes, so that keys are also seen while a menu or a panel is open.
    void addToMainRunLoop() override {
        CFRunLoopAddSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
    }

    void removeFromMainRunLoop() override {
        CFRunLoopRemoveSource(CFRunLoopGetMain(), source_.get(), kCFRunLoopCommonModes);
    }

private:
    Ref<CFRunLoopSourceRef> source_;
};

class Tap final : public platform::EventTap {
public:
    Tap(platform::EventTapOptions options, platform::EventTapCallback callback, void* userInfo);
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;
    ~Tap() override { Tap::invalidate(); }

    /// False if the system refuses such a tap.
    bool isThere() const { return static_cast<bool>(port_); }

    void enable(bool enabled) override {
        if (port_) {
            CGEventTapEnable(port_.get(), enabled);
        }
    }

    void setInterest(std::span<const platform::KeyCombination> /*combinations*/) override {}
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override { return {}; }
    std::vector<platform::KeyCombination> refusedCombinations() const override { return {}; }

    std::unique_ptr<platform::RunLoopSource> createRunLoopSource() override {
        return std::make_unique<Source>(port_.get());
    }

    void invalidate() override {
        if (port_) {
            CFMachPortInvalidate(port_.get());
            port_ = {};
        }
    }

private:
    static CGEventRef receive(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                              void* tap) noexcept;
    CGEventRef deliver(CGEventType type, CGEventRef event);

    platform::EventTapCallback callback_;
    void* userInfo_;
    Ref<CFMachPortRef> port_;
};

// The system makes taps enabled, and holds up every key until an active one has answered. Nobody
// answers before this one is on the run loop.
Tap::Tap(platform::EventTapOptions options, platform::EventTapCallback callback, void* userInfo)
    : callback_(callback), userInfo_(userInfo),
      port_(Ref<CFMachPortRef>::owned(CGEventTapCreate(
          kCGHIDEventTap, kCGHeadInsertEventTap,
          options == platform::EventTapOptions::active ? kCGEventTapOptionDefault
                                                       : kCGEventTapOptionListenOnly,
          CGEventMaskBit(kCGEventKeyDown), &Tap::receive, this))) {
    Tap::enable(false);
}

CGEventRef Tap::receive(CGEventTapProxy /*proxy*/, CGEventType type, CGEventRef event,
                        void* tap) noexcept {
    return static_cast<Tap*>(tap)->deliver(type, event);
}

// The callback may destroy the tap, so nothing of it is used afterwards.
CGEventRef Tap::deliver(CGEventType type, CGEventRef event) {
    if (type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput) {
        callback_(this, type, nullptr, userInfo_);
        return event;
    }
    if (type != kCGEventKeyDown) {
        return event;
    }
    const platform::KeyEvent press{.keyCode =
                                       CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode),
                                   .flags = CGEventGetFlags(event)};
    return callback_(this, platform::eventKeyDown, &press, userInfo_) == nullptr ? nullptr : event;
}

} // namespace

std::unique_ptr<platform::EventTap> EventTaps::create(platform::EventTapOptions options,
                                                      platform::EventTapCallback callback,
                                                      void* userInfo) {
    auto tap = std::make_unique<Tap>(options, callback, userInfo);
    return tap->isThere() ? std::move(tap) : nullptr;
}

} // namespace hollowfernpike::macos
