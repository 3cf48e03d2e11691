#include "ui/Sheets.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

bool isBlocked(const QWidget& window) {
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal != nullptr && modal != &window && modal->windowModality() == Qt::ApplicationModal) {
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
