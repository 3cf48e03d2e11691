#pragma once

#include "platform/x11/server/Connection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// What came back for one property; null if the window is gone. Any client can write anything into
/// any property, so every reader here checks the value's format.
using PropertyReply = Reply<xcb_get_property_reply_t>;

/// Asks for at most `words` units of four bytes of a property. XCB_ATOM_ANY as `type` accepts every
/// type; for any other, a value of a different type comes back empty. Sends without waiting.
xcb_get_property_cookie_t askProperty(const Connection& connection, xcb_window_t window,
                                      xcb_atom_t property, xcb_atom_t type, std::uint32_t words);

/// Waits for the answer.
PropertyReply takeProperty(const Connection& connection, xcb_get_property_cookie_t cookie);

/// Asks as askProperty() does, and waits.
PropertyReply readProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                           xcb_atom_t type, std::uint32_t words);

/// The value as a list of 32-bit numbers; empty if it is none.
std::span<const std::uint32_t> numbersOf(const PropertyReply& reply);

/// The first of these numbers.
std::optional<std::uint32_t> numberOf(const PropertyReply& reply);

/// The value as bytes; empty if it is no text.
std::string textOf(const PropertyReply& reply);

} // namespace hollowfernpike::x11
