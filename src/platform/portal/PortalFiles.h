#pragma once

#include <string>
#include <string_view>

namespace hollowfernpike::portal {

/// The portal that serves an interface (org.freedesktop.impl.portal...) in the session that calls
/// itself so ("GNOME", or several names with colons between them), as the files of
/// xdg-desktop-portal say: portals.conf(5) first, else what each portal says of itself. Empty if
/// there is none. Asks no service.
std::string portalFor(std::string_view interface, std::string_view session);

} // namespace hollowfernpike::portal
