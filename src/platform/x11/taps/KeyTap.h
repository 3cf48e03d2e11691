#pragma once

#include "platform/EventTap.h"
#include "platform/MainQueue.h"
#include "platform/freedesktop/keyboard/Tap.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/taps/EventThread.h"
#include "platform/x11/taps/KeySource.h"
#include "platform/x11/taps/UserTime.h"

#include <functional>
#include <memory>
#include <optional>

namespace hollowfernpike::x11 {

/// A tap on an X connection of its own. What the connection brings is read by a thread and handled
/// on the main thread, in order. It holds nothing of the server unless it is both enabled and
/// attached to the main loop.
///
/// When keys or modifiers may have moved, key repeat has changed, or other combinations than before
/// are held by other programs, it reports itself disabled, once for a burst of changes, and keeps
/// working with the old map until it is enabled again.
class KeyTap final : public freedesktop::Tap {
public:
    /// What a tap uses and does not own.
    struct Services {
        platform::MainQueue& queue; ///< must outlive every tap
        UserTime& userTime;
        std::function<void()> connectionLost; ///< called on the main thread
    };
    /// XKB must be in use on the connection.
    KeyTap(Services services, std::unique_ptr<Connection> connection,
           std::unique_ptr<KeySource> source, platform::EventTapCallback callback, void* userInfo);
    KeyTap(const KeyTap&) = delete;
    KeyTap& operator=(const KeyTap&) = delete;
    ~KeyTap() override;

    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override;

private:
    EventThread::Receiver receiver();
    void start() override;
    void stop() override;
    void end() override;
    void handle(const xcb_generic_event_t& event);
    void take(const KeyPress& press);
    void reportChange();

    Services services_;
    std::unique_ptr<Connection> connection_;
    std::unique_ptr<KeySource> source_;
    std::unique_ptr<EventThread> thread_;
    /// Sequence number; older events predate the present live period. Absent while not live.
    std::optional<std::uint32_t> liveSince_;
    unsigned changes_ = 0;
};

} // namespace hollowfernpike::x11
