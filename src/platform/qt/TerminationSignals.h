#pragma once

#include "platform/RunLoop.h"
#include "platform/posix/Descriptor.h"

#include <functional>
#include <memory>

namespace hollowfernpike::qt {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the program leaves the
/// way it does when the user quits. If this object is still there five seconds after such a signal,
/// because the main thread waits for something that does not come, the process ends all the same.
/// One at a time. Main thread only.
class TerminationSignals {
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

    /// Calls `onSignal` after such signals, those already waiting included.
    void watch(platform::RunLoop& runLoop, std::function<void()> onSignal);

private:
    posix::Descriptor arrivals_;
    std::unique_ptr<platform::Subscription> watch_;
};

} // namespace hollowfernpike::qt
