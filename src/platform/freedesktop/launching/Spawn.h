#pragma once

#include "platform/freedesktop/files/Descriptor.h"

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
    Descriptor descriptor; ///< a pidfd; readable once the process has ended
};

/// Starts a program in a session of its own, with default signal dispositions, no signal blocked,
/// the limit of core files that we were started with, standard input empty and no other descriptor
/// of ours but standard output and error. It is our child: somebody must wait for it. Throws
/// std::system_error with what the system said if the directory cannot be entered or the program
/// cannot be run; nothing is left behind then.
StartedProcess spawn(ProgramStart start);

} // namespace hollowfernpike::freedesktop
