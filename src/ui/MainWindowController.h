#pragma once

#include <QWidget>

#include <memory>

namespace hollowfernpike {

/// Owns the management window. Main thread only.
class MainWindowController {
public:
    MainWindowController();

    /// Shows the window, makes it the key window and brings it before our others.
    void showWindow();

private:
    std::unique_ptr<QWidget> window_;
};

} // namespace hollowfernpike
