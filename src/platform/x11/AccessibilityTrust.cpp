#include "platform/x11/AccessibilityTrust.h"

#include <utility>

namespace hollowfernpike::x11 {

AccessibilityTrust::AccessibilityTrust(Prompt prompt, std::string displayName)
    : prompt_(std::move(prompt)), displayName_(std::move(displayName)) {}

bool AccessibilityTrust::isProcessTrusted() {
    return !problem();
}

bool AccessibilityTrust::isProcessTrustedWithPrompt() {
    const auto found = problem();
    if (found) {
        prompt_(*found);
    }
    return !found;
}

std::optional<TrustProblem> AccessibilityTrust::problem() const {
    return findTrustProblem(Connection::open(displayName_).get());
}

} // namespace hollowfernpike::x11
