#pragma once

#include "platform/Interface.h"
#include "platform/RunLoop.h"
#include "platform/WindowOwners.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace hollowfernpike::platform {

/// An ordinary window of an application, whether or not the user can see it now.
struct ClientWindow {
    std::optional<std::int32_t> process;
    WindowOwner owner;
};

/// Every application window of the session: minimised ones and other workspaces included. For
/// backends that must know which processes have windows. Main thread only.
class ClientWindows : public Interface {
public:
    /// In the order in which the windows first appeared.
    virtual std::vector<ClientWindow> clientWindows() = 0;

    /// Calls `onChange` after windows came or went, until the subscription is destroyed, which the
    /// handler may do itself. Costs a wake-up per change, so hold it only while waiting for a
    /// window.
    [[nodiscard]] virtual std::unique_ptr<Subscription> watch(std::function<void()> onChange) = 0;
};

} // namespace hollowfernpike::platform
