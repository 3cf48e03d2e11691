#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace hollowfernpike::test {

/// Looks at the windows of a desktop and moves them about as a task bar does, through the window
/// manager. Requests return at once; what comes of them has to be waited for.
class Pager {
public:
    explicit Pager(const std::string& display);
    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;
    ~Pager();

    /// The window that the window manager calls active; XCB_NONE if there is none.
    xcb_window_t activeWindow();

    /// The window that gets the keys.
    xcb_window_t focusedWindow();

    /// All managed windows, the lowest first.
    std::vector<xcb_window_t> stacking();

    /// The second part of its WM_CLASS; empty if it has none.
    std::string classOf(xcb_window_t window);

    /// Its title (_NET_WM_NAME); empty if it has none.
    std::string titleOf(xcb_window_t window);

    /// The lowest window of this title; XCB_NONE while there is none.
    xcb_window_t windowCalled(std::string_view title);

    /// Whether task bars list it.
    bool isInTaskBar(xcb_window_t window);

    bool isMinimised(xcb_window_t window);
    std::uint32_t workspaceOf(xcb_window_t window);
    std::uint32_t currentWorkspace();

    void activate(xcb_window_t window);
    void minimise(xcb_window_t window);
    void close(xcb_window_t window);
    void moveToWorkspace(xcb_window_t window, std::uint32_t workspace);
    void setWorkspaceCount(std::uint32_t count);
    std::uint32_t workspaceCount();

    /// How many connections to the display this process has.
    std::size_t clients(pid_t process);

    /// The server's clock now.
    xcb_timestamp_t serverTime();

private:
    void send(xcb_window_t window, xcb_atom_t type, std::vector<std::uint32_t> values);

    xcb_connection_t* connection_;
    xcb_ewmh_connection_t ewmh_{};
    xcb_window_t clock_;
};

} // namespace hollowfernpike::test
