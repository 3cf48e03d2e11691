#pragma once

#include "platform/Interface.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace hollowfernpike::platform {

/// One window that the user can see now, as far as the desktop tells.
struct WindowInfo {
    std::optional<std::string> ownerName;     ///< name of the application that owns it, UTF-8
    std::optional<std::int32_t> ownerProcess; ///< process identifier of the owner
    std::optional<std::int32_t> layer;        ///< 0 for ordinary windows and dialogs
};

/// The windows on the screen. Main thread only.
class WindowList : public Interface {
public:
    /// The visible windows from front to back; minimised ones and those of other workspaces are
    /// left out. Absent when the desktop cannot be asked.
    virtual std::optional<std::vector<WindowInfo>> copyWindowInfo() = 0;
};

} // namespace hollowfernpike::platform
