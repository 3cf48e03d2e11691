#pragma once

#include "platform/x11/server/Connection.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include <xcb/res.h>
#include <xcb/xcb.h>

namespace hollowfernpike::x11 {

/// The process behind each client of the display, as the server itself knows it from the socket
/// (X-Resource 1.2). Unlike `_NET_WM_PID`, it cannot be falsified by the client or by the container
/// that the client runs in. Clients of other machines have none.
class ClientProcesses {
public:
    /// Process identifiers by client.
    using Answer = std::map<std::uint32_t, std::int32_t>;

    explicit ClientProcesses(const Connection& connection);

    /// The client that made a window: the window's number without the bits that the client chooses.
    std::uint32_t clientOf(xcb_window_t window) const { return window & ~resourceMask_; }

    /// Asks, without waiting, for the clients that made these windows. Absent if the server cannot
    /// tell or there is nothing to ask.
    std::optional<xcb_res_query_client_ids_cookie_t>
    ask(std::span<const xcb_window_t> windows) const;

    /// Waits for the answer.
    Answer take(std::optional<xcb_res_query_client_ids_cookie_t> cookie) const;

private:
    const Connection& connection_;
    std::uint32_t resourceMask_;
    bool isKnown_;
};

} // namespace hollowfernpike::x11
