#pragma once

#include "platform/macos/Workspace.h"
#include "platform/macos/fakes/FakeMac.h"
#include "support/fakes/CallLog.h"
#include "support/fakes/FakeMainQueue.h"

namespace hollowfernpike::test {

/// The backend asks the system, which opens nothing and reports the result that the test has set.
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
        backend_.openApplication(path, configuration, std::move(completion));
        FakeMac::shared().opening.back()(result.processIdentifier.value_or(0),
                                         result.error ? result.error->english() : "");
        queue_.runDue();
    }

private:
    CallLog& log_;
    FakeMainQueue queue_;
    macos::Workspace backend_{queue_};
};

} // namespace hollowfernpike::test
