#pragma once

#include "platform/SystemTray.h"

#include <QIcon>
#include <QPixmap>
#include <QWidget>

#include <functional>

namespace hollowfernpike::qt {

/// Our status item as a window that a tray takes in. Lives as long as the tray it was made for.
/// Unlike other windows, it takes clicks while a modal dialog is open.
class TrayWindow final : public QWidget {
public:
    /// Hands itself over to the tray. `onClick` is called for every press of the left or right
    /// button, with its place on the screen.
    TrayWindow(platform::SystemTray& tray, std::function<void(QPoint)> onClick);

    /// The description is the tooltip and what screen readers say.
    void setImage(const QIcon& image, const QString& description);

private:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    std::function<void(QPoint)> onClick_;
    QIcon image_;
    QPixmap ground_; ///< what the tray shows behind us where it does not blend windows
};

} // namespace hollowfernpike::qt
