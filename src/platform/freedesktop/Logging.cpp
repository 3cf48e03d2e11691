#include "platform/freedesktop/Logging.h"

namespace hollowfernpike::freedesktop {

Q_LOGGING_CATEGORY(keysLog, "hollowfernpike.keys", QtWarningMsg)
Q_LOGGING_CATEGORY(windowsLog, "hollowfernpike.windows", QtWarningMsg)
Q_LOGGING_CATEGORY(launchingLog, "hollowfernpike.launching", QtWarningMsg)
Q_LOGGING_CATEGORY(busLog, "hollowfernpike.bus", QtWarningMsg)

} // namespace hollowfernpike::freedesktop
