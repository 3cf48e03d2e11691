#include "platform/qt/StatusBar.h"

#include "platform/qt/StatusItem.h"

namespace hollowfernpike::qt {

std::unique_ptr<platform::StatusItem> StatusBar::createStatusItem() {
    return std::make_unique<StatusItem>(application_, tray_, bus_);
}

} // namespace hollowfernpike::qt
