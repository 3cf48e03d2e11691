#pragma once

#include "main/Messages.h"
#include "platform/x11/TrustMessage.h"
#include "ui/PermissionPrompt.h"

#include <optional>
#include <utility>

namespace hollowfernpike {

/// Tells what keeps us from the keys: in a window as often as asked, and once on standard error.
class TrustPrompt {
public:
    void show(x11::TrustProblem problem) {
        const auto message = x11::trustMessage(problem);
        if (std::exchange(told_, problem) != problem) {
            tell(message);
        }
        window_.show(message);
    }

    void close() { window_.close(); }

private:
    std::optional<x11::TrustProblem> told_;
    PermissionPrompt window_;
};

} // namespace hollowfernpike
