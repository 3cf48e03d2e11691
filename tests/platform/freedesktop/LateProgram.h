#pragma once

#include "platform/freedesktop/ApplicationsHome.h"
#include "support/ChildProcess.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>

namespace hollowfernpike::test {

/// A script that waits to be let go, and then replaces itself by a witness, as start scripts do.
class LateProgram {
public:
    /// `name` is that of the witness; `number` tells several of them apart.
    LateProgram(const ApplicationsHome& home, const std::string& name, int number = 0)
        : gate_(home.path() / ("gate" + std::to_string(number))),
          process_({"/bin/sh", "-c", waits, "sh", made(gate_), home.program(name),
                    home.reports().string(), "stay"}) {}

    pid_t pid() const { return process_.pid(); }

    /// Lets the script go, once it is there.
    void begin() const { std::ofstream(gate_) << "go\n"; }

private:
    static constexpr auto waits = R"(read line < "$1"; shift; exec "$@")";

    static std::string made(const std::filesystem::path& gate) {
        ::mkfifo(gate.c_str(), 0600);
        return gate.string();
    }

    std::filesystem::path gate_;
    ChildProcess process_;
};

} // namespace hollowfernpike::test
