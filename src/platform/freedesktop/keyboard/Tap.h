#pragma once

#include "platform/EventTap.h"

#include <memory>
#include <vector>

namespace hollowfernpike::freedesktop {

/// What the taps of all desktops have in common: a tap is live while it is both enabled and
/// attached to the main loop. Main thread only. Destructors of derived classes call invalidate().
class Tap : public platform::EventTap {
public:
    void enable(bool enabled) final;
    std::unique_ptr<platform::RunLoopSource> createRunLoopSource() final;
    void invalidate() final;
    std::vector<platform::KeyCombination> listenOnlyCombinations() const override { return {}; }
    std::vector<platform::KeyCombination> refusedCombinations() const override { return {}; }

protected:
    Tap(platform::EventTapCallback callback, void* userInfo);

    /// These call the callback, which may destroy this tap.
    void deliver(const platform::KeyEvent& press);
    void report(platform::EventType type);

    /// Delivers a press of a combination that the desktop has bound, as it looks without locks.
    void deliver(const platform::KeyCombination& combination);

    /// Reports the tap disabled if other combinations are refused than at the last call.
    void reportRefused();

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

    platform::EventTapCallback callback_;
    void* userInfo_;
    std::shared_ptr<Tap*> self_;
    std::vector<platform::KeyCombination> reportedRefused_;
    bool enabled_ = false;
    bool attached_ = false;
    bool isLive_ = false;
};

} // namespace hollowfernpike::freedesktop
