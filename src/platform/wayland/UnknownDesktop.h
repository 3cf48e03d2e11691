#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

namespace hollowfernpike::wayland {

/// A session on a Wayland compositor that we know no way to get keys from: windows and status item
/// work, shortcuts do not. Takes the connection; never null.
std::unique_ptr<platform::FoundDesktop> findUnknownDesktop(std::unique_ptr<Connection>& connection);

} // namespace hollowfernpike::wayland
