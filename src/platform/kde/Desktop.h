#pragma once

#include "platform/Desktop.h"
#include "platform/wayland/connection/Connection.h"

namespace hollowfernpike::kde {

/// A session of KDE Plasma on Wayland (KWin 5.27 or later). Null otherwise; then the connection
/// stays the caller's.
std::unique_ptr<platform::FoundDesktop>
findDesktop(std::unique_ptr<wayland::Connection>& connection);

} // namespace hollowfernpike::kde
