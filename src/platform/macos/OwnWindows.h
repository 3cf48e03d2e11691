#pragma once

#include "platform/OwnWindows.h"

namespace hollowfernpike::macos {

/// Windows of ours, named by their views. The Dock shows applications, not windows.
class OwnWindows final : public platform::OwnWindows {
public:
    /// In the Dock, with a menu bar.
    void setShownAsApplication(bool shown) override;

    void setShownInTaskBar(std::uintptr_t /*window*/, bool /*shown*/) override {}
    void bringToFront(std::uintptr_t window) override;
    void useActivationToken(const std::string& /*token*/) override {}
};

} // namespace hollowfernpike::macos
