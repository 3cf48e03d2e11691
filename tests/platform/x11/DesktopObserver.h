#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

/// A test's own eyes and hands on a display: sees what the window manager says, asks it for things
/// as a pager does, and writes properties as a client does, sane or not. Every call that changes
/// something returns after the server has seen it.
class DesktopObserver {
public:
    explicit DesktopObserver(const std::string& display);
    DesktopObserver(const DesktopObserver&) = delete;
    DesktopObserver& operator=(const DesktopObserver&) = delete;
    ~DesktopObserver();

    xcb_connection_t* get() const { return connection_; }
    xcb_window_t root() const { return root_; }
    xcb_atom_t atom(std::string_view name);

    std::vector<std::uint32_t> numbers(xcb_window_t window, std::string_view property);
    xcb_window_t activeWindow();
    std::uint32_t currentDesktop();
    std::vector<xcb_window_t> stacking();                    ///< from the bottom to the top
    std::vector<xcb_window_t> children(xcb_window_t window); ///< from the bottom to the top
    bool hasState(xcb_window_t window, std::string_view state);
    bool isFocused(xcb_window_t window);

    void minimise(xcb_window_t window);
    void moveToDesktop(xcb_window_t window, std::uint32_t desktop);
    void switchToDesktop(std::uint32_t desktop);
    void activate(xcb_window_t window, xcb_timestamp_t time);

    xcb_window_t createWindow(xcb_window_t parent);
    void destroyWindow(xcb_window_t window);
    void setNumbers(xcb_window_t window, std::string_view property, xcb_atom_t type,
                    const std::vector<std::uint32_t>& values);
    void setText(xcb_window_t window, std::string_view property, std::string_view value);
    void sync();

private:
    void message(xcb_window_t window, std::string_view type,
                 const std::vector<std::uint32_t>& values);

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
};

} // namespace hollowfernpike::test
