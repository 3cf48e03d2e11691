#pragma once

#include "platform/AccessibilityTrust.h"

namespace hollowfernpike::macos {

/// The permission of the system's settings for accessibility. The system words its prompt itself.
class AccessibilityTrust final : public platform::AccessibilityTrust {
public:
    bool isProcessTrusted() override;
    bool isProcessTrustedWithPrompt() override;
};

} // namespace hollowfernpike::macos
