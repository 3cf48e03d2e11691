#pragma once

#include "platform/RunningApplications.h"

namespace hollowfernpike::macos {

/// The applications that the system knows to run, in its own order.
class RunningApplications final : public platform::RunningApplications {
public:
    std::vector<platform::RunningApplication>
    withBundleIdentifier(std::string_view bundleIdentifier) override;

    std::optional<platform::RunningApplication>
    withProcessIdentifier(std::int32_t processIdentifier) override;

    /// Opens its bundle again if the system refuses, which it may while another program is active.
    void activate(const platform::RunningApplication& application) override;
};

} // namespace hollowfernpike::macos
