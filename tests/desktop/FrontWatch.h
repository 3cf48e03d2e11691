#pragma once

#include "support/WaitUntil.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// Sees which window is in front at the very moment when the window manager says so.
class FrontWatch {
public:
    using Clock = std::chrono::steady_clock;

    struct Arrival {
        xcb_window_t window = XCB_NONE;
        Clock::time_point time;
    };

    explicit FrontWatch(const std::string& display);
    FrontWatch(const FrontWatch&) = delete;
    FrontWatch& operator=(const FrontWatch&) = delete;
    ~FrontWatch();

    /// Forgets what the window manager has said so far.
    void forget();

    /// Waits until the window manager names an active window for which `isWanted` holds. What it
    /// has named since the last call of this or of forget() counts, too. Absent after `longest`.
    std::optional<Arrival> wait(const std::function<bool(xcb_window_t)>& isWanted,
                                std::chrono::milliseconds longest = patience);

    std::optional<Arrival> wait(xcb_window_t window, std::chrono::milliseconds longest = patience);

private:
    bool waitForNews(Clock::time_point deadline);
    xcb_window_t activeWindow();

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
    xcb_atom_t activeWindowAtom_ = XCB_NONE;
};

} // namespace hollowfernpike::test
