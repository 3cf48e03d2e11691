#pragma once

#include "platform/x11/server/Connection.h"

#include <span>

#include <xcb/xproto.h>

namespace hollowfernpike::x11 {

/// What becomes of the Super key when it goes down alone.
///
/// Who opens a menu with that key (window managers, panels) grabs it on the root. When another key
/// follows, the holder has the server replay that key, and the server then passes over every grab
/// on the root, ours of Super+A included. It does find grabs on the windows below the root, but
/// only while the pointer is over such a window, too (Xorg 21.1, CheckDeviceGrabs).
enum class LoneSuperKey {
    free,     ///< nobody holds it: grabs on the root see every press
    guarded,  ///< held as mutter and its kin do, who have a window under the pointer everywhere:
              ///< grabs on windows see every press
    unguarded ///< held in another way (icewm): what is pressed while the pointer is over the bare
              ///< root passes by all grabs
};

/// Asks by grabbing each of the Super keys and giving it back before the server serves anybody
/// else. Mutter and its kin are told by the kind of their grab, which is one of XInput 2; nobody
/// else is known to take such a one of this key. Waits for the server, once.
LoneSuperKey loneSuperKey(const Connection& connection, std::span<const xcb_keycode_t> superKeys);

} // namespace hollowfernpike::x11
