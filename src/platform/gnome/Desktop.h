#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

#include <memory>

namespace hollowfernpike::gnome {

/// The session if its shell is GNOME Shell on Wayland and our extension is installed for it; it
/// takes the connection then. Otherwise null.
std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection);

} // namespace hollowfernpike::gnome
