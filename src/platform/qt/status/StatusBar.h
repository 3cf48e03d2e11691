#pragma once

#include "platform/StatusBar.h"
#include "platform/SystemTray.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/qt/Application.h"

namespace hollowfernpike::qt {

/// The status bars of free desktops: hosts of status notifier items on the session bus, and trays
/// of the older kind (System Tray Protocol 0.3). Tells the application whether our item shows.
class StatusBar final : public platform::StatusBar {
public:
    /// All outlive the bar and its items. Null for the tray or the bus if there is none.
    StatusBar(Application& application, platform::SystemTray* tray,
              const freedesktop::SessionBus* bus)
        : application_(application), tray_(tray), bus_(bus) {}

    /// An item on the panel that there is: with a host of status notifier items, or as a window in
    /// a tray if no such host appears within 1.5 s.
    std::unique_ptr<platform::StatusItem> createStatusItem() override;

private:
    Application& application_;
    platform::SystemTray* tray_;
    const freedesktop::SessionBus* bus_;
};

} // namespace hollowfernpike::qt
