#pragma once

#include "platform/x11/windows/WindowReader.h"

#include <cstdint>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Asks the window manager (EWMH) to bring the windows of the process forward, in the name of the
/// user: source indication 2 and the time of the key press. False if the process has no window in
/// the snapshot, or the server is gone. `snapshot` is the latest one that `windows` has read.
bool raiseProcess(const WindowReader& windows, const Snapshot& snapshot, std::int32_t process,
                  xcb_timestamp_t time);

} // namespace hollowfernpike::x11
