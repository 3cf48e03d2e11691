#pragma once

#include "platform/EventTap.h"

#include <memory>

namespace hollowfernpike::freedesktop {

/// What the taps of all desktops have in common: a tap is live while it is both enabled and
/// attached to the main loop. Main thread only. Destructors of derived classes call invalidate().
class Tap : public platform::EventTap {
public:
    void enable(bool enabled) final;
    std::unique_ptr<platform::RunLoopSource> createRunLoopSource() final;
    void invalidate() final;

protected:
    /// Who is told of the key presses.
    struct Listener {
        platform::EventTapCallback callback = nullptr;
        void* userInfo = nullptr;
    };

    Tap();

    /// The event for a combination that the desktop has bound: what a press of it looks like
    /// without locks.
    static platform::KeyEvent keyDownOf(const platform::KeyCombination& combination);

    bool isLive() const { return isLive_; }

    /// Expires when the tap is invalidated: for work that waits in the main queue.
    std::weak_ptr<void> life() const { return self_; }

private:
    class Source;

    /// Begins to deliver, or begins afresh if already live.
    virtual void start() = 0;

    /// Stops delivering and gives back what the tap holds of the desktop.
    virtual void stop() = 0;

    /// The tap is invalid from now on: gives back what it holds even while it is not live.
    virtual void end() {}

    void attach(bool attached);
    void apply();

    std::shared_ptr<Tap*> self_;
    bool enabled_ = false;
    bool attached_ = false;
    bool isLive_ = false;
};

} // namespace hollowfernpike::freedesktop
