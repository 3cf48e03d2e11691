#pragma once

#include "platform/StatusBar.h"
#include "platform/qt/Application.h"

namespace hollowfernpike::qt {

/// The status bars of free desktops: StatusNotifierItem hosts over the session bus, and trays of
/// the older kind (XEmbed, System Tray Protocol 0.3). Tells the application whether our item shows.
class StatusBar final : public platform::StatusBar {
public:
    /// The application outlives the bar and its items.
    explicit StatusBar(Application& application) : application_(application) {}

    std::unique_ptr<platform::StatusItem> createStatusItem() override;

private:
    Application& application_;
};

} // namespace hollowfernpike::qt
