#pragma once

#include "platform/StatusBar.h"
#include "platform/SystemTray.h"
#include "platform/qt/Application.h"

namespace hollowfernpike::qt {

/// The status bars of free desktops: hosts of status notifier items on the session bus, and trays
/// of the older kind (System Tray Protocol 0.3). Tells the application whether our item shows.
class StatusBar final : public platform::StatusBar {
public:
    /// Application and tray outlive the bar and its items. `hasSessionBus` tells whether there is a
    /// bus to connect to; where there is none the toolkit would start one.
    StatusBar(Application& application, platform::SystemTray& tray, bool hasSessionBus)
        : application_(application), tray_(tray), hasSessionBus_(hasSessionBus) {}

    std::unique_ptr<platform::StatusItem> createStatusItem() override;

private:
    Application& application_;
    platform::SystemTray& tray_;
    bool hasSessionBus_;
};

} // namespace hollowfernpike::qt
