#pragma once

#include "platform/ProcessActivation.h"
#include "support/CallLog.h"

#include <functional>
#include <set>

namespace hollowfernpike::test {

/// Succeeds for every process but those that the test names as windowless.
class FakeProcessActivation final : public platform::ProcessActivation {
public:
    explicit FakeProcessActivation(CallLog& log) : log_(log) {}

    std::function<void()> onBring; ///< runs, if any, in the middle of every request
    std::set<std::int32_t> windowless;

    bool bringToFront(std::int32_t processIdentifier) override {
        log_.record("processActivation.bringToFront " + std::to_string(processIdentifier));
        if (onBring) {
            onBring();
        }
        return !windowless.contains(processIdentifier);
    }

private:
    CallLog& log_;
};

} // namespace hollowfernpike::test
