#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// What the toolkit leaves to us of our own windows, by the Extended Window Manager Hints 1.5.
/// Speaks over the toolkit's connection, so that requests keep their order with the toolkit's own.
/// Main thread only.
class OwnWindows {
public:
    /// `toolkit` outlives this.
    explicit OwnWindows(xcb_connection_t* toolkit);

    /// Has task bars and pagers list a window or leave it out, whether it is on the screen already
    /// or has yet to come.
    void setShownInTaskBar(xcb_window_t window, bool shown);

    /// Has the window manager put the window before all others, with the keys, and go to the
    /// workspace on which it lies. To be called when the user asks for the window, in whatever
    /// way.
    void bringToFront(xcb_window_t window);

private:
    bool isManaged(xcb_window_t window);
    std::optional<std::uint32_t> number(xcb_window_t window, std::string_view property,
                                        xcb_atom_t type);
    void writeState(xcb_window_t window, bool shown);

    xcb_connection_t* toolkit_;
    xcb_window_t root_;
};

} // namespace hollowfernpike::x11
