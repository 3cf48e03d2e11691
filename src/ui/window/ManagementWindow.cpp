#include "ui/window/ManagementWindow.h"

#include "ui/parts/AccessibleRole.h"

#include <QKeySequence>
#include <QScrollArea>
#include <QShortcut>

namespace hollowfernpike {

ManagementWindow::ManagementWindow() {
    setAccessibleRole(*this, QAccessible::Window);
    auto* close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
}

bool ManagementWindow::focusNextPrevChild(bool next) {
    const bool moved = QWidget::focusNextPrevChild(next);
    QWidget* focused = focusWidget();
    if (moved && scrollView_ != nullptr && scrollView_->widget()->isAncestorOf(focused)) {
        constexpr int roomForTheCard = 20; // above and below a button of it
        scrollView_->ensureWidgetVisible(focused, 0, roomForTheCard);
    }
    return moved;
}

} // namespace hollowfernpike
