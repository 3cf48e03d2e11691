#pragma once

#include "platform/Interface.h"

#include <cstdint>
#include <string>

namespace hollowfernpike::platform {

/// What only the desktop can do for a window of ours, named by its native identifier. Main thread
/// only.
class OwnWindows : public Interface {
public:
    /// Has the desktop list the program as one that runs, or leave it out, where it lists programs
    /// and not windows.
    virtual void setShownAsApplication(bool /*shown*/) {}

    /// Has task bars and pagers list a window or leave it out, whether it is on the screen already
    /// or has yet to come.
    virtual void setShownInTaskBar(std::uintptr_t window, bool shown) = 0;

    /// Puts the window in front of all others, gives it the keyboard focus, and switches to its
    /// workspace. To be called when the user asks for the window.
    virtual void bringToFront(std::uintptr_t window) = 0;

    /// Who asks for our windows gives this token, by which the desktop knows that the user wants
    /// the next window that is brought to the front. Never empty.
    virtual void useActivationToken(const std::string& token) = 0;
};

} // namespace hollowfernpike::platform
