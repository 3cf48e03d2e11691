#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

namespace hollowfernpike::sway {

/// A session of sway, 1.7 or later: the compositor answers on sway's socket. Null otherwise; then
/// the connection stays the caller's.
std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection);

} // namespace hollowfernpike::sway
