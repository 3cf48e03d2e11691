#pragma once

#include "platform/x11/server/Reply.h"

#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// A connection to an X server and its default screen. Closing it gives back every grab made on it.
class Connection {
public:
    /// Connects to the named display, or to that of the environment if the name is empty. Null if
    /// there is none or it refuses us.
    static std::unique_ptr<Connection> open(const std::string& displayName = {});

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    xcb_connection_t* get() const { return connection_; }
    xcb_window_t root() const { return screen_->root; }
    int screenNumber() const { return screenNumber_; }
    int descriptor() const { return xcb_get_file_descriptor(connection_); }

    /// Whether the server has gone away or closed the connection.
    bool isLost() const { return xcb_connection_has_error(connection_) != 0; }

    /// Whether the server offers the extension to us. Cached by xcb after the first answer.
    bool hasExtension(xcb_extension_t& extension) const;

private:
    Connection(xcb_connection_t* connection, int screenNumber);

    xcb_connection_t* connection_;
    int screenNumber_;
    xcb_screen_t* screen_;
};

} // namespace hollowfernpike::x11
