#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/launching/Spawn.h"

#include <functional>
#include <map>
#include <memory>

namespace hollowfernpike::freedesktop {

/// Waits for the processes that we started, so that none of them stays behind as a zombie. They
/// live on when this is destroyed. Main thread only.
class ChildProcesses {
public:
    /// The loop outlives this.
    explicit ChildProcesses(platform::RunLoop& runLoop) : runLoop_(runLoop) {}

    /// Calls `onEnd` on the main thread, never inside this call, once the process has ended and is
    /// waited for.
    void adopt(StartedProcess process, std::function<void()> onEnd);

private:
    struct Child {
        StartedProcess process;
        std::function<void()> onEnd;
        std::unique_ptr<platform::Subscription> watch;
    };

    void reap(pid_t number);

    platform::RunLoop& runLoop_;
    std::map<pid_t, Child> children_;
};

} // namespace hollowfernpike::freedesktop
