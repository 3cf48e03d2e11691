#pragma once

#include "support/ChildProcess.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// The built program as a test runs it: one copy at a time, which ends with the object.
class Utility {
public:
    Utility() = default;
    Utility(const Utility&) = delete;
    Utility& operator=(const Utility&) = delete;
    ~Utility();

    /// Starts it in a private session of any kind, in the place of the copy before.
    template <class Session>
    ChildProcess& start(const Session& session, const Environment& changes = {},
                        const std::vector<std::string>& command = {HFP_PROGRAM}) {
        end();
        process_ = session.start(command, changes);
        return *process_;
    }

    bool isRunning() const { return process_ != nullptr && !process_->hasEnded(); }

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
