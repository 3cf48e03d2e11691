#pragma once

#include "platform/Interface.h"

#include <cstdint>

namespace hollowfernpike::platform {

/// Brings a process to the front. Main thread only.
class ProcessActivation : public Interface {
public:
    /// Brings the windows of the process that are in sight forward and makes the topmost active, as
    /// a request of the user: with the time of the last key press that a tap delivered. Where none
    /// is in sight, switches to the workspace of the topmost or restores the minimised one. Returns
    /// false when the process has no window; true means that the desktop was asked, which it
    /// answers in its own time.
    virtual bool bringToFront(std::int32_t processIdentifier) = 0;
};

} // namespace hollowfernpike::platform
