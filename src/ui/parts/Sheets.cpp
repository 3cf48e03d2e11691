#include "ui/parts/Sheets.h"

#include "platform/Application.h"
#include "platform/Services.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

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
