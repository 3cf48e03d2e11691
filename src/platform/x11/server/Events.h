#pragma once

#include "platform/x11/server/Connection.h"

#include <functional>
#include <optional>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The events of a connection that is used for questions and requests. Some come unasked (keyboard
/// changes go to every client) and some on request; all are read off here, so that none pile up.
/// Main thread only.
class Events {
public:
    /// The connection outlives this object.
    explicit Events(const Connection& connection) : connection_(connection) {}

    /// Reads off what has arrived, without waiting.
    void drain();

    /// Called for every property change of the root that is read off, from within any function that
    /// reads off events. The connection must have selected them. Null removes the handler.
    void setRootPropertyHandler(std::function<void(xcb_atom_t property)> handler) {
        onRootProperty_ = std::move(handler);
    }

    /// The server's time now, from the event that answers an empty change of a property (ICCCM
    /// 2.1). Waits for the server; XCB_CURRENT_TIME if it is gone.
    xcb_timestamp_t serverTime();

private:
    Reply<xcb_generic_event_t> next();
    void note(const xcb_generic_event_t& event) const;

    const Connection& connection_;
    std::function<void(xcb_atom_t property)> onRootProperty_;
};

} // namespace hollowfernpike::x11
