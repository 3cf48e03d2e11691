#pragma once

#include <string>

namespace hollowfernpike::portal {

/// The portal that serves an interface (org.freedesktop.impl.portal...) in the session that calls
/// itself so ("GNOME", or several names with colons between them), as the files of
/// xdg-desktop-portal say: portals.conf(5) first, else what each portal says of itself. Empty if
/// there is none. Asks no service.
std::string portalFor(const char* interface, const std::string& session);

} // namespace hollowfernpike::portal
