#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

#include <memory>

namespace hollowfernpike::portal {

/// A session on a Wayland compositor whose desktop binds keys for programs by its portal. Takes the
/// connection if the session is one, as far as the files of the portals tell; null otherwise.
/// Starts no service.
std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection);

} // namespace hollowfernpike::portal
