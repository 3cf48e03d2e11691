#include "platform/freedesktop/launching/ChildProcesses.h"

#include <utility>

#include <sys/wait.h>

namespace hollowfernpike::freedesktop {

void ChildProcesses::adopt(StartedProcess process, std::function<void()> onEnd) {
    const pid_t number = process.number;
    auto& child = children_[number];
    child.process = std::move(process);
    child.onEnd = std::move(onEnd);
    child.watch =
        runLoop_.watchReadable(child.process.descriptor.get(), [this, number] { reap(number); });
}

void ChildProcesses::reap(pid_t number) {
    const auto child = children_.extract(number);
    ::waitid(P_PIDFD, static_cast<id_t>(child.mapped().process.descriptor.get()), nullptr,
             WEXITED | WNOHANG);
    child.mapped().onEnd();
}

} // namespace hollowfernpike::freedesktop
