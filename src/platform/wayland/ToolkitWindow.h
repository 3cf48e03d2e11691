#pragma once

#include <cstdint>
#include <functional>

#include <QMetaObject>

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

/// Calls the handler before the toolkit takes the window's surface away, however it does: objects
/// on a surface have to go first. Until the connection is cut or the window is destroyed.
QMetaObject::Connection beforeHiding(QWindow& window, std::function<void()> handler);

/// Our window with this native identifier; null if there is none.
QWindow* windowWith(std::uintptr_t identifier);

} // namespace hollowfernpike::wayland
