#pragma once

#include "platform/AccessibilityTrust.h"
#include "platform/x11/TrustProblem.h"

#include <functional>
#include <string>

namespace hollowfernpike::x11 {

/// Asks the X server itself, over a new connection each time.
class AccessibilityTrust final : public platform::AccessibilityTrust {
public:
    /// Tells the user; must return without waiting for an answer.
    using Prompt = std::function<void(TrustProblem)>;

    /// The display of the environment if the name is empty. `onTrusted`, if any, is told whenever
    /// the answer is yes.
    explicit AccessibilityTrust(Prompt prompt, std::string displayName = {},
                                std::function<void()> onTrusted = {});

    bool isProcessTrusted() override;
    bool isProcessTrustedWithPrompt() override;

private:
    std::optional<TrustProblem> problem() const;

    Prompt prompt_;
    std::string displayName_;
    std::function<void()> onTrusted_;
};

} // namespace hollowfernpike::x11
