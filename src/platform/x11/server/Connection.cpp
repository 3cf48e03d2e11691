#include "platform/x11/server/Connection.h"

#include <xcb/xcb_aux.h>

namespace hollowfernpike::x11 {

std::unique_ptr<Connection> Connection::open(const std::string& displayName) {
    int screenNumber = 0;
    auto* connection =
        xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber);
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<Connection>(new Connection(connection, screenNumber));
}

Connection::Connection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection), screenNumber_(screenNumber),
      screen_(xcb_aux_get_screen(connection, screenNumber)) {}

Connection::~Connection() {
    xcb_disconnect(connection_);
}

bool Connection::hasExtension(xcb_extension_t& extension) const {
    const auto* data = xcb_get_extension_data(connection_, &extension);
    return data != nullptr && data->present != 0;
}

} // namespace hollowfernpike::x11
