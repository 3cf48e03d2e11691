#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace hollowfernpike::test {

/// Where a window's contents lie on the screen.
struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// What somebody in front of the screen sees of the windows on it.
class Screen {
public:
    explicit Screen(const std::string& display);
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen();

    /// Empty if the window has none or is gone.
    std::string titleOf(xcb_window_t window);

    /// All zero if the window is gone.
    Place placeOf(xcb_window_t window);

    /// The colours of one column of a window, from top to bottom; empty if it cannot be seen.
    std::vector<std::uint32_t> column(xcb_window_t window, int x);

private:
    xcb_connection_t* connection_;
    xcb_ewmh_connection_t ewmh_{};
};

} // namespace hollowfernpike::test
