#pragma once

#include "platform/Interface.h"

namespace hollowfernpike::platform {

/// Whether this process may see and swallow key presses of the whole desktop. Asked of the desktop
/// anew each time: the answer may change while the process runs. Main thread only.
class AccessibilityTrust : public Interface {
public:
    virtual bool isProcessTrusted() = 0;

    /// The same, and tells the user what is missing and what to do if it is not trusted. Returns
    /// without waiting for the user.
    virtual bool isProcessTrustedWithPrompt() = 0;
};

} // namespace hollowfernpike::platform
