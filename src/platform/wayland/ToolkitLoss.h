#pragma once

#include <functional>

namespace hollowfernpike::wayland {

/// Calls a handler when the toolkit has lost the compositor. The toolkit ends the process as soon
/// as the handler returns. At most one of these at a time; main thread only.
class ToolkitLoss {
public:
    explicit ToolkitLoss(std::function<void()> handler);
    ToolkitLoss(const ToolkitLoss&) = delete;
    ToolkitLoss& operator=(const ToolkitLoss&) = delete;
    ~ToolkitLoss();
};

} // namespace hollowfernpike::wayland
