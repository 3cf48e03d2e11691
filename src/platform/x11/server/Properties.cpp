#include "platform/x11/server/Properties.h"

namespace hollowfernpike::x11 {

xcb_get_property_cookie_t askProperty(const Connection& connection, xcb_window_t window,
                                      xcb_atom_t property, xcb_atom_t type, std::uint32_t words) {
    return xcb_get_property(connection.get(), 0, window, property, type, 0, words);
}

PropertyReply takeProperty(const Connection& connection, xcb_get_property_cookie_t cookie) {
    return awaitReply<xcb_get_property_reply>(connection.get(), cookie);
}

PropertyReply readProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                           xcb_atom_t type, std::uint32_t words) {
    return awaitReply<xcb_get_property_reply>(
        connection, xcb_get_property(connection, 0, window, property, type, 0, words));
}

std::span<const std::uint32_t> numbersOf(const PropertyReply& reply) {
    if (!reply || reply->format != 32) {
        return {};
    }
    return {static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())),
            reply->value_len};
}

std::optional<std::uint32_t> numberOf(const PropertyReply& reply) {
    const auto numbers = numbersOf(reply);
    return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

std::string textOf(const PropertyReply& reply) {
    if (!reply || reply->format != 8) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

} // namespace hollowfernpike::x11
