#pragma once

#include "platform/Interface.h"

#include <chrono>
#include <functional>

namespace hollowfernpike::platform {

/// Runs work later on the main thread, in the order in which it was handed over.
///
/// Work never runs inside the call that schedules it. What a closure captures lives until the
/// closure has run or the queue is destroyed; work still waiting then is dropped unrun.
class MainQueue : public Interface {
public:
    using Work = std::function<void()>;

    /// Runs `work` in one of the next turns of the main loop. Any thread.
    virtual void async(Work work) = 0;

    /// Runs `work` once `delay` has passed, never earlier. Main thread.
    virtual void asyncAfter(std::chrono::milliseconds delay, Work work) = 0;
};

} // namespace hollowfernpike::platform
