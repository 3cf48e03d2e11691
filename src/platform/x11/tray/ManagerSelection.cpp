#include "platform/x11/tray/ManagerSelection.h"

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Reply.h"
#include "platform/x11/taps/EventKinds.h"

#include <string>

namespace hollowfernpike::x11 {

ManagerSelection::ManagerSelection(xcb_connection_t* connection, std::string_view prefix,
                                   int screenNumber)
    : connection_(connection),
      selection_(internAtom(connection, std::string{prefix} + std::to_string(screenNumber))),
      manager_(internAtom(connection, "MANAGER")) {}

xcb_window_t ManagerSelection::owner() const {
    const auto reply = awaitReply<xcb_get_selection_owner_reply>(
        connection_, xcb_get_selection_owner(connection_, selection_));
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

bool ManagerSelection::isAnnouncedBy(const xcb_generic_event_t& event) const {
    if (eventCode(event) != XCB_CLIENT_MESSAGE) {
        return false;
    }
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    return message.type == manager_ && message.format == 32 && message.data.data32[1] == selection_;
}

} // namespace hollowfernpike::x11
