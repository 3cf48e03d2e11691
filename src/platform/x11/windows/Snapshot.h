#pragma once

#include "platform/WindowOwners.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The layer of windows that people work in. Whatever only surrounds them lies below or above.
inline constexpr std::int32_t ordinaryLayer = 0;

/// What is kept of a window from one snapshot to the next.
struct WindowIdentity {
    std::optional<std::int32_t> clientProcess;
    std::string windowClass;
    std::int32_t layer = 0;
    platform::WindowFacts facts;
    std::optional<platform::WindowOwner> owner; ///< absent until asked for
};

/// A managed window at the moment of a snapshot.
struct WindowRecord {
    xcb_window_t window = XCB_NONE;
    bool isHidden = false;
    std::optional<std::uint32_t> desktop;
    WindowIdentity* identity = nullptr; ///< never null
};

/// All managed windows.
struct Snapshot {
    std::vector<WindowRecord> windows;     ///< front to back
    std::vector<xcb_window_t> oldestFirst; ///< as far as the window manager knows
    std::optional<std::uint32_t> currentDesktop;
    bool canRestack = false;

    /// Whether the window is on the current desktop, or on all of them.
    bool isHere(const WindowRecord& record) const;

    /// The windows in the order in which they first appeared; those of unknown age last.
    std::vector<const WindowRecord*> byAge() const;
};

} // namespace hollowfernpike::x11
