#pragma once

#include "platform/Desktop.h"

namespace hollowfernpike::x11 {

/// Sessions on an X server. find() connects to the display that the environment names, because the
/// toolkit's plug-in would abort the process if there is none.
platform::DesktopKind desktopKind();

} // namespace hollowfernpike::x11
