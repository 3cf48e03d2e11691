#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

namespace hollowfernpike::wayland {

/// A session on a Wayland compositor that tells us of no keys: its own configuration has to bind
/// them to commands of ours. Windows of others come forward where it offers
/// wlr-foreign-toplevel-management. Takes the connection; never null.
std::unique_ptr<platform::FoundDesktop> findUnknownDesktop(std::unique_ptr<Connection>& connection);

} // namespace hollowfernpike::wayland
