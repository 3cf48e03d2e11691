#pragma once

#include "platform/RunLoop.h"
#include "platform/posix/Descriptor.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::freedesktop {

struct ProgramStart {
    std::string program;                  ///< an absolute path
    std::vector<std::string> arguments;   ///< the first one is the name that the program sees
    std::vector<std::string> environment; ///< "NAME=value", the whole of it
    std::string workingDirectory;
};

struct StartedProcess {
    pid_t number = 0;
    posix::Descriptor descriptor; ///< a pidfd; readable once the process has ended
};

/// Starts a program in a session of its own, with default signal dispositions, no signal blocked,
/// the limit of core files that we were started with, standard input empty and no other descriptor
/// of ours but standard output and error. It is our child: somebody must wait for it. Throws
/// std::system_error with what the system said if the directory cannot be entered or the program
/// cannot be run; nothing is left behind then.
StartedProcess spawn(ProgramStart start);

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
