#pragma once

#include "platform/Desktop.h"

#include <string>

namespace hollowfernpike::kde {

/// KWin gives the windows of others only to programs with a desktop entry that asks for them and
/// has the program's full path in Exec. This is what to tell the user if ours has none; the remedy
/// writes such an entry to the user's applications. KWin finds it within two seconds and then
/// admits new connections.
platform::Distrust missingPermission(const std::string& program);

} // namespace hollowfernpike::kde
