#pragma once

#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// What the fakes of one test were asked, in order across all of them: "service.function" and the
/// arguments, separated by blanks.
class CallLog {
public:
    void record(std::string call) { calls_.push_back(std::move(call)); }
    void clear() { calls_.clear(); }

    const std::vector<std::string>& calls() const { return calls_; }

private:
    std::vector<std::string> calls_;
};

} // namespace hollowfernpike::test
