#pragma once

#include "platform/RunningApplications.h"
#include "support/fakes/CallLog.h"

#include <algorithm>
#include <iterator>

namespace hollowfernpike::test {

/// The applications that the test lets run, the longest running first.
class FakeRunningApplications final : public platform::RunningApplications {
public:
    explicit FakeRunningApplications(CallLog& log) : log_(log) {}

    std::vector<platform::RunningApplication> applications;

    std::vector<platform::RunningApplication>
    withBundleIdentifier(std::string_view bundleIdentifier) override {
        log_.record("runningApplications.withBundleIdentifier " + std::string{bundleIdentifier});
        std::vector<platform::RunningApplication> instances;
        std::ranges::copy_if(applications, std::back_inserter(instances), [&](const auto& known) {
            return !bundleIdentifier.empty() && known.bundleIdentifier == bundleIdentifier;
        });
        return instances;
    }

    std::optional<platform::RunningApplication>
    withProcessIdentifier(std::int32_t processIdentifier) override {
        log_.record("runningApplications.withProcessIdentifier " +
                    std::to_string(processIdentifier));
        const auto found = std::ranges::find(applications, processIdentifier,
                                             &platform::RunningApplication::processIdentifier);
        return found == applications.end() ? std::nullopt : std::optional{*found};
    }

    void activate(const platform::RunningApplication& application) override {
        log_.record("runningApplications.activate " +
                    std::to_string(application.processIdentifier));
    }

private:
    CallLog& log_;
};

} // namespace hollowfernpike::test
