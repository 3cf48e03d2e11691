#pragma once

#include "platform/Windows.h"

namespace hollowfernpike::macos {

/// The windows that the window server lists. It tells neither of windows that the user cannot see
/// nor of changes.
class Windows final : public platform::Windows {
public:
    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override;
    std::vector<platform::ClientWindow> clientWindows() override { return {}; }
    std::unique_ptr<platform::Subscription> watch(std::function<void()> /*onChange*/) override {
        return nullptr;
    }

    /// All windows of the process come forward, as if the user had clicked on it in the Dock.
    bool bringToFront(std::int32_t processIdentifier) override;
};

} // namespace hollowfernpike::macos
