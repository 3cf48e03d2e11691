#include "platform/x11/AccessibilityTrust.h"

#include <utility>

namespace hollowfernpike::x11 {

AccessibilityTrust::AccessibilityTrust(Prompt prompt, std::string displayName,
                                       std::function<void()> onTrusted)
    : prompt_(std::move(prompt)), displayName_(std::move(displayName)),
      onTrusted_(std::move(onTrusted)) {}

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
    const auto found = findTrustProblem(Connection::open(displayName_).get());
    if (!found && onTrusted_) {
        onTrusted_();
    }
    return found;
}

} // namespace hollowfernpike::x11
