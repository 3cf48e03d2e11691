#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// Where a window's contents lie on the screen.
struct Place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Place&) const = default;
};

/// What somebody in front of the screen sees of the windows on it and pulls at their frames.
class Screen {
public:
    explicit Screen(const std::string& display);
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen();

    /// All zero if the window is gone.
    Place placeOf(xcb_window_t window);

    /// Asks the window manager to give the window this size.
    void resize(xcb_window_t window, int width, int height);

    /// The colours of one column of a window, from top to bottom; empty if it cannot be seen.
    std::vector<std::uint32_t> column(xcb_window_t window, int x);

private:
    xcb_connection_t* connection_;
};

} // namespace hollowfernpike::test
