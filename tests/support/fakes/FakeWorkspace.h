#pragma once

#include "platform/Workspace.h"
#include "support/fakes/CallLog.h"

namespace hollowfernpike::test {

/// Opens nothing and reports the result that the test has set.
class FakeWorkspace final : public platform::Workspace {
public:
    explicit FakeWorkspace(CallLog& log) : log_(log) {}

    std::function<void()> onOpen; ///< runs, if any, in the middle of every request
    platform::OpenResult result{.processIdentifier = 4711, .error = {}};

    void openApplication(const std::string& path, const platform::OpenConfiguration& configuration,
                         OpenCompletion completion) override {
        log_.record("workspace.openApplication " + path +
                    (configuration.activates ? " activating" : " in background"));
        if (onOpen) {
            onOpen();
        }
        if (completion) {
            completion(result);
        }
    }

private:
    CallLog& log_;
};

} // namespace hollowfernpike::test
