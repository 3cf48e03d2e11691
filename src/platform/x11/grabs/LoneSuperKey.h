#pragma once

#include "platform/x11/server/Connection.h"

#include <span>

#include <xcb/xproto.h>

namespace hollowfernpike::x11 {

/// Whether another client holds the Super key for presses of it alone, and how.
///
/// Window managers and panels that open a menu with that key grab it on the root. When another key
/// follows, the holder has the server replay that key, and the server then skips every grab on the
/// root, ours of Super+A included. It does find grabs on the windows below the root, but only while
/// the pointer is over such a window, too (Xorg 21.1, CheckDeviceGrabs).
enum class LoneSuperKey {
    free,     ///< nobody holds it: grabs on the root see every press
    guarded,  ///< held as by mutter and its relatives, which have a window under the pointer
              ///< everywhere: grabs on windows see every press
    unguarded ///< held in another way (icewm): presses pass by all grabs while the pointer is over
              ///< the bare root
};

/// Finds out by grabbing each Super key and giving it back before the server serves another client.
/// Mutter and its relatives are recognised by their XInput 2 grab: no other program is known to
/// grab this key that way. Waits for the server, once.
LoneSuperKey loneSuperKey(const Connection& connection, std::span<const xcb_keycode_t> superKeys);

} // namespace hollowfernpike::x11
