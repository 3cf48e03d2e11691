#pragma once

#include "platform/x11/server/Connection.h"

#include <cstdint>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// A window of ours that is never shown. Requests about it leave when the connection is flushed.
class HiddenWindow {
public:
    /// The connection outlives this object. `events` are selected on the window.
    explicit HiddenWindow(const Connection& connection, std::uint32_t events = 0)
        : server_(connection.get()), window_(xcb_generate_id(server_)) {
        xcb_create_window(server_, XCB_COPY_FROM_PARENT, window_, connection.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &events);
    }
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;
    ~HiddenWindow() { xcb_destroy_window(server_, window_); }

    xcb_window_t get() const { return window_; }

private:
    xcb_connection_t* server_;
    xcb_window_t window_;
};

} // namespace hollowfernpike::x11
