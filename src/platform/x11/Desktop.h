#pragma once

#include "platform/Desktop.h"

namespace hollowfernpike::x11 {

/// A session on an X server. Connects to the display that the environment names, because the
/// toolkit's plug-in would abort the process if there is none. Null then.
std::unique_ptr<platform::FoundDesktop> findDesktop();

} // namespace hollowfernpike::x11
