#pragma once

#include "platform/StatusBar.h"
#include "platform/qt/Application.h"

namespace hollowfernpike::macos {

/// The right end of the menu bar, which is always there.
class StatusBar final : public platform::StatusBar {
public:
    /// The application outlives the bar and its items.
    explicit StatusBar(qt::Application& application) : application_(application) {
        application_.setStatusItemShown(true);
    }

    std::unique_ptr<platform::StatusItem> createStatusItem() override;

private:
    qt::Application& application_;
};

} // namespace hollowfernpike::macos
