#include "platform/x11/server/ClientProcesses.h"

#include <set>

namespace hollowfernpike::x11 {

namespace {

bool tellsProcesses(const Connection& connection) {
    if (!connection.hasExtension(xcb_res_id)) {
        return false;
    }
    const auto version = awaitReply<xcb_res_query_version_reply>(
        connection.get(), xcb_res_query_version(connection.get(), 1, 2));
    return version && (version->server_major > 1 || version->server_minor >= 2);
}

void add(ClientProcesses::Answer& answer, const xcb_res_client_id_value_t& value) {
    if ((value.spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) == 0 ||
        xcb_res_client_id_value_value_length(&value) < 1) {
        return;
    }
    const auto process = static_cast<std::int32_t>(*xcb_res_client_id_value_value(&value));
    if (process > 0) {
        answer.emplace(value.spec.client, process);
    }
}

} // namespace

ClientProcesses::ClientProcesses(const Connection& connection)
    : connection_(connection),
      resourceMask_(connection.isLost() ? 0 : xcb_get_setup(connection.get())->resource_id_mask),
      isKnown_(tellsProcesses(connection)) {}

std::optional<xcb_res_query_client_ids_cookie_t>
ClientProcesses::ask(std::span<const xcb_window_t> windows) const {
    std::set<std::uint32_t> clients;
    for (const auto window : windows) {
        clients.insert(clientOf(window));
    }
    clients.erase(0); // 0 is the server itself, and means "all clients" in this request
    if (!isKnown_ || clients.empty()) {
        return std::nullopt;
    }
    std::vector<xcb_res_client_id_spec_t> specs;
    for (const auto client : clients) {
        specs.push_back({.client = client, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
    }
    return xcb_res_query_client_ids(connection_.get(), static_cast<std::uint32_t>(specs.size()),
                                    specs.data());
}

ClientProcesses::Answer
ClientProcesses::take(std::optional<xcb_res_query_client_ids_cookie_t> cookie) const {
    Answer answer;
    if (!cookie) {
        return answer;
    }
    const auto reply = awaitReply<xcb_res_query_client_ids_reply>(connection_.get(), *cookie);
    if (reply) {
        for (auto at = xcb_res_query_client_ids_ids_iterator(reply.get()); at.rem > 0;
             xcb_res_client_id_value_next(&at)) {
            add(answer, *at.data);
        }
    }
    return answer;
}

} // namespace hollowfernpike::x11
