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

/// What people see of the windows on the screen, and how they resize them by their frames.
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

    /// Menus and tool tips of the utility that are open.
    std::vector<Place> popups();

    /// Where a tray shows the utility's symbol; all zero if none does.
    Place statusSymbol();

private:
    struct Seen {
        xcb_window_t window = XCB_NONE;
        bool isInRoot = false; ///< directly
        bool isUnmanaged = false;
    };

    /// The utility's windows that can be seen, wherever they lie.
    std::vector<Seen> utilityWindows();
    void collect(xcb_window_t parent, std::vector<Seen>& into);

    xcb_connection_t* connection_;
    xcb_window_t root_;
};

} // namespace hollowfernpike::test
