#include "platform/x11/TraySelection.h"

#include "platform/x11/Atoms.h"
#include "platform/x11/Reply.h"

#include <string>

namespace hollowfernpike::x11 {

xcb_atom_t traySelection(xcb_connection_t* connection, int screenNumber) {
    return internAtom(connection, "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber));
}

xcb_window_t trayOf(xcb_connection_t* connection, xcb_atom_t selection) {
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

} // namespace hollowfernpike::x11
