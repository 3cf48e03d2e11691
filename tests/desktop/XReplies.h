#pragma once

#include "platform/x11/EventKinds.h"
#include "platform/x11/Reply.h"

#include <cstdint>
#include <string_view>

#include <xcb/xcb.h>

namespace hollowfernpike::test {

using x11::eventCode;

/// What the X library has handed over (a reply, an event, an error), freed with what this returns.
template <class T>
x11::Reply<T> held(T* part) {
    return x11::Reply<T>{part};
}

/// Waits for the server; XCB_NONE if it is gone.
inline xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = held(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : XCB_NONE;
}

} // namespace hollowfernpike::test
