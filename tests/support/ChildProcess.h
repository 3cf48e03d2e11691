#pragma once

#include "support/WaitUntil.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace hollowfernpike::test {

/// Variables on top of this process's own; an absent value takes the variable away.
using Environment = std::map<std::string, std::optional<std::string>>;

/// These variables, with others in their place or beside them.
Environment changed(Environment environment, const Environment& changes);

/// A program started by a test, in a process group of its own; it and its group are killed with
/// the object. Standard input is empty; output and errors are kept in memory, to be read while the
/// program runs.
class ChildProcess {
public:
    /// Throws std::system_error if the program cannot be started.
    explicit ChildProcess(const std::vector<std::string>& arguments,
                          const Environment& environment = {});
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    pid_t pid() const { return pid_; }

    /// Everything written to standard output, or standard error, so far.
    const std::string& output();
    const std::string& errors();

    /// Waits for a whole line on standard output that begins with `prefix` and returns it; absent
    /// if the program ends first or `longest` passes.
    std::optional<std::string> waitForLine(const std::string& prefix,
                                           std::chrono::milliseconds longest = patience);

    void signal(int number) const;

    /// Whether it has ended; reaps it.
    bool hasEnded();

    /// Waits for its end. The exit code, or minus the signal's number; absent after `longest`.
    std::optional<int> wait(std::chrono::milliseconds longest = patience);

private:
    pid_t pid_ = -1;
    int outputPipe_ = -1;
    int errorPipe_ = -1;
    std::string output_;
    std::string errors_;
    std::optional<int> status_;
};

/// The state letter of any process ("S", "Z", ...); empty if there is none.
std::string processState(pid_t process);

} // namespace hollowfernpike::test
