#pragma once

#include "platform/x11/server/Connection.h"

namespace hollowfernpike::x11 {

/// The event's number, without the bit that marks events sent by another client.
constexpr std::uint8_t eventCode(const xcb_generic_event_t& event) {
    return event.response_type & 0x7FU;
}

/// Whether the event is this one of the XKEYBOARD extension.
bool isXkbEvent(const Connection& connection, const xcb_generic_event_t& event, std::uint8_t type);

/// Whether the event is this one of the XInput 2 extension.
bool isXInputEvent(const Connection& connection, const xcb_generic_event_t& event,
                   std::uint16_t type);

/// Whether the event says that keys or modifiers may have moved, or repeat at another pace.
bool isKeyboardChange(const Connection& connection, const xcb_generic_event_t& event);

} // namespace hollowfernpike::x11
