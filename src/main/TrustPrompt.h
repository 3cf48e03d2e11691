#pragma once

#include "main/Messages.h"
#include "platform/AccessibilityTrust.h"
#include "platform/Desktop.h"
#include "ui/window/PermissionPrompt.h"

#include <string>
#include <utility>

namespace hollowfernpike {

/// Asks the desktop whether it trusts us. A prompt opens a window that says what is missing, and
/// writes that to standard error unless the last prompt wrote the same. Where that cannot change,
/// the window opens once. Closes the window once nothing is missing.
class TrustPrompt final : public platform::AccessibilityTrust {
public:
    /// The desktop outlives this.
    explicit TrustPrompt(platform::Desktop& desktop) : desktop_(desktop) {}

    bool isProcessTrusted() override { return !problem(); }

    bool isProcessTrustedWithPrompt() override {
        const auto found = problem();
        if (found) {
            show(*found);
        }
        return !found;
    }

private:
    std::optional<platform::Distrust> problem() {
        auto found = desktop_.trustProblem();
        if (!found) {
            window_.close();
        }
        return found;
    }

    void show(const platform::Distrust& problem) {
        const auto& text = problem.reason.english();
        const bool isNew = std::exchange(told_, text) != text;
        if (isNew) {
            tell(problem.reason);
        }
        if (isNew || desktop_.mayBecomeTrusted()) {
            window_.show(problem);
        }
    }

    platform::Desktop& desktop_;
    std::string told_;
    PermissionPrompt window_;
};

} // namespace hollowfernpike
