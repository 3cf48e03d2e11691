#pragma once

#include "platform/macos/RunningApplications.h"
#include "platform/macos/fakes/FakeMac.h"
#include "support/fakes/CallLog.h"

#include <vector>

namespace hollowfernpike::test {

/// The applications that the test lets run, in the system's order; the backend asks for them.
class FakeRunningApplications final : public platform::RunningApplications {
public:
    explicit FakeRunningApplications(CallLog& log) : log_(log) {}

    std::vector<platform::RunningApplication> applications;

    std::vector<platform::RunningApplication>
    withBundleIdentifier(std::string_view bundleIdentifier) override {
        log_.record("runningApplications.withBundleIdentifier " + std::string{bundleIdentifier});
        letThemRun();
        return backend_.withBundleIdentifier(bundleIdentifier);
    }

    std::optional<platform::RunningApplication>
    withProcessIdentifier(std::int32_t processIdentifier) override {
        log_.record("runningApplications.withProcessIdentifier " +
                    std::to_string(processIdentifier));
        letThemRun();
        return backend_.withProcessIdentifier(processIdentifier);
    }

    void activate(const platform::RunningApplication& application) override {
        log_.record("runningApplications.activate " +
                    std::to_string(application.processIdentifier));
        letThemRun();
        backend_.activate(application);
    }

private:
    void letThemRun() const {
        auto& running = FakeMac::shared().running;
        running.clear();
        for (const auto& application : applications) {
            running.push_back({.process = application.processIdentifier,
                               .bundleIdentifier = application.bundleIdentifier,
                               .isTerminated = application.isTerminated});
        }
    }

    CallLog& log_;
    macos::RunningApplications backend_;
};

} // namespace hollowfernpike::test
