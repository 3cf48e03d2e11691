#pragma once

#include <functional>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// What the fakes of one test were asked, in order across all of them: "service.function" and the
/// arguments, separated by blanks.
class CallLog {
public:
    /// What else happens in every call; may be empty, and may replace itself.
    std::function<void(const std::string& call)> onCall;

    void record(const std::string& call) {
        calls_.push_back(call);
        if (const auto event = onCall) {
            event(call);
        }
    }
    void clear() { calls_.clear(); }

    const std::vector<std::string>& calls() const { return calls_; }

private:
    std::vector<std::string> calls_;
};

} // namespace hollowfernpike::test
