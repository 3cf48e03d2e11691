#pragma once

#include <QLoggingCategory>

namespace hollowfernpike::freedesktop {

// What goes wrong and is got over without a word to the user, by the toolkit's logging: off by
// default, switched on by QT_LOGGING_RULES="hollowfernpike.*=true". Never a key that is not bound.

Q_DECLARE_LOGGING_CATEGORY(keysLog)
Q_DECLARE_LOGGING_CATEGORY(windowsLog)
Q_DECLARE_LOGGING_CATEGORY(launchingLog)
Q_DECLARE_LOGGING_CATEGORY(busLog)

} // namespace hollowfernpike::freedesktop
