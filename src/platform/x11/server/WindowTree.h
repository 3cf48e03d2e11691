#pragma once

#include "platform/x11/server/Connection.h"

#include <cstddef>
#include <vector>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// A window that carries WM_STATE, which a window manager puts on every window it manages (ICCCM
/// 4.1.3.1).
struct TreeWindow {
    xcb_window_t window;
    bool isIconic;
};

/// The managed windows from the bottom to the top: children of the root, or of a frame there. At
/// most `most`. Waits for the server, three times.
std::vector<TreeWindow> managedWindowsOfTree(const Connection& connection, xcb_atom_t wmStateAtom,
                                             std::size_t most);

} // namespace hollowfernpike::x11
