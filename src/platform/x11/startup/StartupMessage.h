#pragma once

#include "platform/x11/server/Atoms.h"
#include "platform/x11/server/Connection.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hollowfernpike::x11 {

/// A message of the start-up notification protocol (freedesktop.org, version 0.2): a prefix such as
/// "new" and its keys in order. Keys with an empty value are left out; values are quoted, and cut
/// at a length that no sane one reaches.
std::string startupMessage(std::string_view prefix,
                           const std::vector<std::pair<std::string_view, std::string>>& keys);

/// Broadcasts the message to whoever listens at the root: in pieces of 20 bytes that carry `sender`
/// to tell concurrent messages apart. Flushes, waits for nothing.
void broadcastStartupMessage(const Connection& connection, const Atoms& atoms, xcb_window_t sender,
                             const std::string& message);

} // namespace hollowfernpike::x11
