#pragma once

#include "platform/EventTap.h"
#include "platform/MainQueue.h"
#include "platform/x11/server/Connection.h"
#include "platform/x11/taps/EventThread.h"
#include "platform/x11/taps/KeySource.h"
#include "platform/x11/taps/UserTime.h"

#include <functional>
#include <memory>

namespace hollowfernpike::x11 {

/// A tap on an X connection of its own. What the connection brings is read by a thread and handled
/// on the main thread, in order. It holds nothing of the server unless it is both enabled and
/// attached to the main loop.
///
/// When keys or modifiers may have moved, or key repeat has changed, it reports itself disabled,
/// once for a burst of changes, and keeps working with the old map until it is enabled again.
class KeyTap final : public platform::EventTap {
public:
    /// What a tap uses and does not own.
    struct Services {
        platform::MainQueue& queue; ///< must outlive every tap
        UserTime& userTime;
        std::function<void()> connectionLost; ///< called on the main thread
    };
    struct Listener {
        platform::EventTapCallback callback = nullptr;
        void* userInfo = nullptr;
    };

    /// XKB must be in use on the connection.
    KeyTap(Services services, std::unique_ptr<Connection> connection,
           std::unique_ptr<KeySource> source, Listener listener);
    KeyTap(const KeyTap&) = delete;
    KeyTap& operator=(const KeyTap&) = delete;
    ~KeyTap() override;

    void enable(bool enabled) override;
    void setInterest(std::span<const platform::KeyCombination> combinations) override;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override;
    std::unique_ptr<platform::RunLoopSource> createRunLoopSource() override;
    void invalidate() override;

private:
    /// Finds the tap from work that waits in the main queue; empty once the tap is invalid.
    using Self = std::weak_ptr<KeyTap*>;
    class Source;

    EventThread::Receiver receiver();
    void attach(bool attached);
    void apply();
    void start();
    void handle(const xcb_generic_event_t& event);
    void deliver(const KeyPress& press);
    void reportKeyboardChange();

    Services services_;
    Listener listener_;
    std::shared_ptr<KeyTap*> self_;
    std::unique_ptr<Connection> connection_;
    std::unique_ptr<KeySource> source_;
    std::unique_ptr<EventThread> thread_;
    bool enabled_ = false;
    bool attached_ = false;
    bool live_ = false;
    std::uint32_t liveSince_ = 0; ///< sequence number; older events predate the present live period
    unsigned keyboardChanges_ = 0;
};

} // namespace hollowfernpike::x11
