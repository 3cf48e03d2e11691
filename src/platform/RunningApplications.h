#pragma once

#include "platform/Interface.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hollowfernpike::platform {

/// A process that runs an application, as it was when asked.
struct RunningApplication {
    std::int32_t processIdentifier = 0;
    std::string bundleIdentifier; ///< empty when the application has none
    bool isTerminated = false;
};

/// The applications that run in this user's desktop session. Main thread only.
class RunningApplications : public Interface {
public:
    /// All instances of the application in the desktop's own stable order. The first one counts:
    /// if it has ended, the application is launched, even if another one is alive. Helper processes
    /// of an instance are not instances. Empty for an empty identifier.
    virtual std::vector<RunningApplication>
    withBundleIdentifier(std::string_view bundleIdentifier) = 0;

    /// The application that this process runs; absent if there is no such process or it runs none.
    virtual std::optional<RunningApplication>
    withProcessIdentifier(std::int32_t processIdentifier) = 0;

    /// Asks an application to come forward: by a message if it takes one, else by opening it once
    /// more, which a single-instance program answers by showing itself. Asynchronous; failures are
    /// silent.
    virtual void activate(const RunningApplication& application) = 0;
};

} // namespace hollowfernpike::platform
