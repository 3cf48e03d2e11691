#pragma once

#include <cstdint>

class QWindow;
struct wl_display;
struct wl_seat;
struct wl_surface;

namespace hollowfernpike::wayland {

// What the toolkit made of the compositor. Main thread only; its plug-in must be "wayland".

wl_display* toolkitDisplay();
wl_seat* toolkitSeat();

/// Null while the window is not shown.
wl_surface* surfaceOf(QWindow& window);

/// Our window with this native identifier; null if there is none.
QWindow* windowWith(std::uintptr_t identifier);

} // namespace hollowfernpike::wayland
