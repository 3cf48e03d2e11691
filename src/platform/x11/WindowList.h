#pragma once

#include "platform/WindowList.h"
#include "platform/x11/Windows.h"

namespace hollowfernpike::x11 {

/// The visible windows as the window manager stacks them (EWMH). Main thread only.
class WindowList final : public platform::WindowList {
public:
    /// `windows` outlives this object.
    explicit WindowList(Windows& windows) : windows_(windows) {}

    std::optional<std::vector<platform::WindowInfo>> copyWindowInfo() override;

private:
    platform::WindowInfo infoOf(const WindowRecord& record);

    Windows& windows_;
};

} // namespace hollowfernpike::x11
