#include "platform/x11/taps/EventKinds.h"

#include "platform/x11/keyboard/Xkb.h"

#include <xcb/xinput.h>

namespace hollowfernpike::x11 {

bool isXkbEvent(const Connection& connection, const xcb_generic_event_t& event, std::uint8_t type) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_xkb_id);
    // All XKB events share one code; the byte of core events' detail tells them apart.
    return eventCode(event) == extension->first_event && event.pad0 == type;
}

bool isXInputEvent(const Connection& connection, const xcb_generic_event_t& event,
                   std::uint16_t type) {
    if (eventCode(event) != XCB_GE_GENERIC) {
        return false;
    }
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_input_id);
    return generic.extension == extension->major_opcode && generic.event_type == type;
}

bool isKeyboardChange(const Connection& connection, const xcb_generic_event_t& event) {
    return eventCode(event) == XCB_MAPPING_NOTIFY ||
           isXkbEvent(connection, event, XCB_XKB_NEW_KEYBOARD_NOTIFY) ||
           isXkbEvent(connection, event, XCB_XKB_MAP_NOTIFY) ||
           isXkbEvent(connection, event, XCB_XKB_CONTROLS_NOTIFY);
}

} // namespace hollowfernpike::x11
