#pragma once

#include "support/ChildProcess.h"

#include <memory>
#include <string>

namespace hollowfernpike::test {

/// The built program as a test runs it: one copy at a time, which ends with the object.
class Utility {
public:
    Utility() = default;
    Utility(const Utility&) = delete;
    Utility& operator=(const Utility&) = delete;
    ~Utility();

    /// Starts it in the place of the copy before.
    ChildProcess& start(const Environment& environment);

    /// To be called after start() only.
    ChildProcess& process() { return *process_; }

    /// What it has written so far; empty before start().
    std::string tells();

private:
    /// Fails the test if a sanitizer has complained.
    void end();

    std::unique_ptr<ChildProcess> process_;
};

} // namespace hollowfernpike::test
