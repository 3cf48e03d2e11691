#pragma once

#include "platform/EventTap.h"
#include "platform/x11/taps/EventTaps.h"
#include "support/KeyInjector.h"
#include "support/PrivateDesktop.h"
#include "support/fakes/PumpedMainQueue.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

// Virtual key codes.
inline constexpr std::uint16_t keyX = 7;
inline constexpr std::uint16_t keyC = 8;

namespace flags = platform::event_flags; // NOLINT(misc-unused-alias-decls): for the tests

/// A tap attached to the main loop, and what its callback was told.
class ListeningTap {
public:
    ListeningTap(x11::EventTaps& taps, platform::EventTapOptions options)
        : tap_(taps.create(options, &ListeningTap::note, this)) {
        if (tap_) {
            source_ = tap_->createRunLoopSource();
            source_->addToMainRunLoop();
        }
    }
    ListeningTap(const ListeningTap&) = delete;
    ListeningTap& operator=(const ListeningTap&) = delete;
    ~ListeningTap() = default;

    platform::EventTap& tap() { return *tap_; }
    platform::RunLoopSource& source() { return *source_; }
    bool exists() const { return tap_ != nullptr; }

    void watch(const std::vector<platform::KeyCombination>& combinations) {
        tap_->setInterest(combinations);
    }
    void destroy() { tap_.reset(); }

    std::vector<platform::KeyEvent> presses;
    int disabledReports = 0;
    int focusLosses = 0;
    bool reenables = true;
    std::function<void()> onPress;

private:
    static const platform::KeyEvent* note(platform::EventTap* proxy, platform::EventType type,
                                          const platform::KeyEvent* event, void* userInfo) {
        auto& self = *static_cast<ListeningTap*>(userInfo);
        if (type == platform::eventTapDisabledByUserInput) {
            ++self.disabledReports;
            if (self.reenables) {
                proxy->enable(true);
            }
            return event;
        }
        if (type == platform::eventTapFocusLost) {
            ++self.focusLosses;
            return event;
        }
        self.presses.push_back(*event);
        if (self.onPress) {
            self.onPress();
        }
        return nullptr;
    }

    std::unique_ptr<platform::EventTap> tap_;
    std::unique_ptr<platform::RunLoopSource> source_;
};

/// A display with taps and a keyboard to type on.
class KeyTapTest : public testing::Test {
protected:
    static platform::KeyCombination combination(std::uint16_t keyCode, std::uint64_t modifiers) {
        return {.keyCode = keyCode, .modifierFlags = modifiers};
    }

    std::unique_ptr<ListeningTap> makeTap(platform::EventTapOptions options) {
        auto tap = std::make_unique<ListeningTap>(taps_, options);
        EXPECT_TRUE(tap->exists());
        tap->tap().enable(true);
        return tap;
    }
    std::unique_ptr<ListeningTap> makeActiveTap() {
        return makeTap(platform::EventTapOptions::active);
    }
    std::unique_ptr<ListeningTap> makeListenOnlyTap() {
        return makeTap(platform::EventTapOptions::listenOnly);
    }

    /// Whether the tap has been told of this many presses, after waiting for them.
    bool delivered(const ListeningTap& tap, std::size_t count) {
        return queue_.runUntil([&] { return tap.presses.size() >= count; });
    }

    /// Changes the keyboard by one of the X tools, and waits until it has ended.
    void run(const std::vector<std::string>& command) {
        ChildProcess tool(command, {{"DISPLAY", display_.name()}});
        ASSERT_EQ(tool.wait(), 0) << command.front() << ": " << tool.errors();
    }

    VirtualDisplay display_;
    PumpedMainQueue queue_;
    x11::UserTime userTime_;
    int connectionsLost_ = 0;
    x11::EventTaps taps_{queue_, userTime_, display_.name(), [this] { ++connectionsLost_; }};
    KeyInjector keyboard_{display_.name()};
};

} // namespace hollowfernpike::test
