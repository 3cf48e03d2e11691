#include "platform/x11/TrustProblem.h"

#include "platform/x11/keyboard/Xkb.h"

#include <string_view>
#include <utility>

#include <xcb/xinput.h>

namespace hollowfernpike::x11 {

namespace {

/// The first version with raw events that are seen in spite of grabs.
constexpr std::pair<std::uint16_t, std::uint16_t> neededXInput{2, 1};

bool offersXkb(const Connection& connection) {
    if (!connection.hasExtension(xcb_xkb_id)) {
        return false;
    }
    const Reply<xcb_xkb_use_extension_reply_t> reply{xcb_xkb_use_extension_reply(
        connection.get(),
        xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
        nullptr)};
    return reply && reply->supported != 0;
}

bool offersXInput(const Connection& connection) {
    if (!connection.hasExtension(xcb_input_id)) {
        return false;
    }
    const Reply<xcb_input_xi_query_version_reply_t> reply{xcb_input_xi_query_version_reply(
        connection.get(),
        xcb_input_xi_query_version(connection.get(), neededXInput.first, neededXInput.second),
        nullptr)};
    return reply && std::pair{reply->major_version, reply->minor_version} >= neededXInput;
}

bool hasXwaylandExtension(const Connection& connection) {
    constexpr std::string_view name = "XWAYLAND";
    const Reply<xcb_query_extension_reply_t> reply{xcb_query_extension_reply(
        connection.get(),
        xcb_query_extension(connection.get(), static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr)};
    return reply && reply->present != 0;
}

/// Xwayland's devices tell it apart where it is too old for the extension.
bool hasXwaylandDevice(const Connection& connection) {
    const Reply<xcb_input_xi_query_device_reply_t> reply{xcb_input_xi_query_device_reply(
        connection.get(), xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL),
        nullptr)};
    if (!reply) {
        return false;
    }
    for (auto device = xcb_input_xi_query_device_infos_iterator(reply.get()); device.rem > 0;
         xcb_input_xi_device_info_next(&device)) {
        const std::string_view name(xcb_input_xi_device_info_name(device.data),
                                    device.data->name_len);
        if (name.starts_with("xwayland-")) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<TrustProblem> findTrustProblem(const Connection* connection) {
    if (connection == nullptr) {
        return TrustProblem::noDisplay;
    }
    const bool offered = offersXkb(*connection) && offersXInput(*connection);
    if (connection->isLost()) {
        return TrustProblem::noDisplay;
    }
    if (!offered) {
        return TrustProblem::restrictedClient;
    }
    if (hasXwaylandExtension(*connection) || hasXwaylandDevice(*connection)) {
        return TrustProblem::guestOfWayland;
    }
    return std::nullopt;
}

} // namespace hollowfernpike::x11
