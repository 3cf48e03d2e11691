#include "ui/parts/Sheets.h"

#include "platform/Application.h"
#include "platform/Services.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

QScreen& usersScreen() {
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    return screen != nullptr ? *screen : *QGuiApplication::primaryScreen();
}

void center(QWidget& window, const QScreen& screen) {
    const QRect available = screen.availableGeometry();
    const QSize free = (available.size() - window.size()).expandedTo(QSize(0, 0));
    window.move(available.topLeft() + QPoint(free.width() / 2, free.height() / 3));
}

void makeKeyAndOrderFront(QWidget& window) {
    window.show();
    window.raise();
    window.activateWindow();
}

bool isBlocked(const QWidget& window) {
    const bool comesFirst = QApplication::activeModalWidget() == &window;
    if (!comesFirst && platform::services().application.hasModalWindow()) {
        return true;
    }
    return std::ranges::any_of(
        window.findChildren<QDialog*>(Qt::FindDirectChildrenOnly),
        [](const QDialog* dialog) { return dialog->isVisible() && dialog->isModal(); });
}

void onClick(QAbstractButton& button, std::function<void()> action) {
    QObject::connect(&button, &QAbstractButton::clicked, &button,
                     [&button, action = std::move(action)] {
                         if (!isBlocked(*button.window())) {
                             action();
                         }
                     });
}

} // namespace hollowfernpike
