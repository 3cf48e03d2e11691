#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/files/Descriptor.h"

#include <functional>
#include <memory>

namespace hollowfernpike::qt {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that the program leaves the
/// way it does when the user quits. Make it before any thread starts: the signals are blocked from
/// then on. Main thread only.
class TerminationSignals {
public:
    TerminationSignals();

    /// Calls `onSignal` for each such signal, those already waiting included.
    void watch(platform::RunLoop& runLoop, std::function<void()> onSignal);

private:
    freedesktop::Descriptor descriptor_;
    std::unique_ptr<platform::Subscription> watch_;
};

} // namespace hollowfernpike::qt
