#pragma once

#include "platform/Desktop.h"

namespace hollowfernpike::x11 {

/// Sessions on an X server. Finding one connects to the display of the environment; the toolkit's
/// plug-in aborts the process where there is none.
platform::DesktopKind desktopKind();

} // namespace hollowfernpike::x11
