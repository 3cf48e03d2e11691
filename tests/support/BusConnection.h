#pragma once

#include "platform/freedesktop/entries/GlibPointers.h"

#include <memory>
#include <stdexcept>
#include <string>

#include <gio/gio.h>

namespace hollowfernpike::test {

using BusConnection = std::unique_ptr<GDBusConnection, freedesktop::Releaser<&g_object_unref>>;

/// A connection to the bus at `address` that is shared with nobody. Throws std::runtime_error if
/// there is no bus.
inline BusConnection connectToBus(const std::string& address) {
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    BusConnection connection(
        g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, nullptr));
    if (!connection) {
        throw std::runtime_error("no bus at " + address);
    }
    return connection;
}

} // namespace hollowfernpike::test
