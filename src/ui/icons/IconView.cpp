#include "ui/icons/IconView.h"

#include <QPainter>

namespace hollowfernpike {

void IconView::setIcon(const QIcon& icon) {
    icon_ = icon;
    update();
}

void IconView::paintEvent(QPaintEvent*) {
    const QPixmap pixmap = icon_.pixmap(size(), devicePixelRatioF());
    if (pixmap.isNull()) {
        return;
    }
    const QSizeF fitting = pixmap.deviceIndependentSize().scaled(size(), Qt::KeepAspectRatio);
    QRectF target(QPointF(), fitting);
    target.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, pixmap, pixmap.rect());
}

} // namespace hollowfernpike
