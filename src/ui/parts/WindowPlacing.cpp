#include "ui/parts/WindowPlacing.h"

#include <QScreen>
#include <QWidget>

namespace hollowfernpike {

void center(QWidget& window) {
    const QRect available = window.screen()->availableGeometry();
    const QSize free = (available.size() - window.size()).expandedTo(QSize(0, 0));
    window.move(available.topLeft() + QPoint(free.width() / 2, free.height() / 3));
}

void makeKeyAndOrderFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace hollowfernpike
