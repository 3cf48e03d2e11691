#include "ui/MainWindowController.h"

namespace hollowfernpike {

MainWindowController::MainWindowController() : window_(std::make_unique<QWidget>()) {}

void MainWindowController::showWindow() {
    window_->show();
    window_->raise();
    window_->activateWindow();
}

} // namespace hollowfernpike
