#pragma once

#include <QLoggingCategory>

namespace hollowfernpike::freedesktop {

// Log of failures that are handled without telling the user: off by default, switched on by
// QT_LOGGING_RULES="hollowfernpike.*=true". Presses of keys that are not bound are never logged.

Q_DECLARE_LOGGING_CATEGORY(keysLog)
Q_DECLARE_LOGGING_CATEGORY(windowsLog)
Q_DECLARE_LOGGING_CATEGORY(launchingLog)
Q_DECLARE_LOGGING_CATEGORY(busLog)

} // namespace hollowfernpike::freedesktop
