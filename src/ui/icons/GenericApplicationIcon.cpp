#include "ui/icons/GenericApplicationIcon.h"

#include "ui/icons/DrawnIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace hollowfernpike {

namespace {

void drawWindow(QPainter& painter, const QRectF& square, QIcon::Mode mode) {
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const QPalette palette = QGuiApplication::palette();
    const qreal unit = square.width() / 16;
    const QRectF window = square.adjusted(unit, 2 * unit, -unit, -2 * unit);
    QPainterPath outline;
    outline.addRoundedRect(window, unit, unit);

    painter.fillPath(outline, palette.color(group, QPalette::Base));
    painter.setClipPath(outline);
    painter.fillRect(QRectF(window.topLeft(), QSizeF(window.width(), 3 * unit)),
                     palette.color(group, QPalette::Highlight));
    painter.setClipping(false);
    painter.strokePath(outline, QPen(palette.color(group, QPalette::WindowText), unit / 2));
}

} // namespace

QIcon genericApplicationIcon() {
    return drawnIcon(drawWindow);
}

} // namespace hollowfernpike
