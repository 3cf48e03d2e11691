#pragma once

#include "platform/x11/server/Connection.h"

#include <bitset>
#include <functional>
#include <utility>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// Whether the keyboard focus is in one of our windows, as of the event of the connection that was
/// read last. Raw key events and changes of the focus come in the order in which they happened, so
/// what is typed after a change is never taken for what was typed before it. The raw events of
/// presses and releases must be selected. One at most per connection; main thread only.
///
/// Another client that takes the keyboard while no key is down, as lockers and menus do, has taken
/// the focus. One whose grab is caused by a key, such as that of a window manager for Super, has
/// not.
class KeyboardFocus {
public:
    using IsOurs = std::function<bool(xcb_window_t)>;

    /// The connection outlives this object.
    KeyboardFocus(const Connection& connection, IsOurs isOurs)
        : connection_(connection), isOurs_(std::move(isOurs)) {}

    /// Looks where the focus is. Waits for the server.
    void start();

    void stop();

    /// Asks the server as long as no window of ours has had the focus.
    bool isOurs() { return watched_ != XCB_NONE || watch(); }

    /// Must be shown every event in order.
    bool isLostBy(const xcb_generic_event_t& event);

private:
    bool watch();
    xcb_window_t focused() const;
    void noteKey(const xcb_generic_event_t& event);

    const Connection& connection_;
    IsOurs isOurs_;
    xcb_window_t watched_ = XCB_NONE; ///< has the focus and is ours
    std::bitset<256> keysDown_;
};

} // namespace hollowfernpike::x11
