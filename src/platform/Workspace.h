#pragma once

#include "platform/Interface.h"
#include "platform/LocalizedError.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace hollowfernpike::platform {

struct OpenConfiguration {
    bool activates = false; ///< the application comes to the front once it is open
};

/// What became of a request to open an application.
struct OpenResult {
    std::optional<std::int32_t> processIdentifier; ///< absent on failure, or if we started none
    std::optional<LocalizedError> error;           ///< absent on success
};

/// Opens applications. Main thread only.
class Workspace : public Interface {
public:
    /// May be empty. Runs exactly once, on the main thread, inside or after the call.
    using OpenCompletion = std::function<void(const OpenResult&)>;

    /// Launches the application bundle at `path`. A request for an application whose launch is
    /// still under way joins that launch and starts nothing. So does a repeat of the request by a
    /// combination that is held down, even if the launch is over or has failed. A program is not
    /// started again if its last start left a second copy running beside the first: each further
    /// start would add another.
    virtual void openApplication(const std::string& path, const OpenConfiguration& configuration,
                                 OpenCompletion completion) = 0;
};

} // namespace hollowfernpike::platform
