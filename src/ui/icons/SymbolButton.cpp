#include "ui/icons/SymbolButton.h"

#include "ui/parts/FontScale.h"
#include "ui/parts/SystemColors.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPen>

namespace hollowfernpike {

namespace {

constexpr int buttonSide = 28;
constexpr int symbolSide = 20; // one point for one unit of the drawings' grid
constexpr qreal faceRadius = 6;

} // namespace

SymbolButton::SymbolButton(Symbol symbol, SymbolTint tint, const QString& description,
                           QWidget* parent)
    : QAbstractButton(parent) {
    setIcon(symbolImage(symbol, tint));
    adoptFont();
    setAccessibleName(description);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
}

void SymbolButton::adoptFont() {
    setIconSize({grown(symbolSide), grown(symbolSide)});
    setFixedSize(grown(buttonSide), grown(buttonSide));
}

void SymbolButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        adoptFont();
    }
    QAbstractButton::changeEvent(event);
}

void SymbolButton::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QAbstractButton::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        click();
    }
}

void SymbolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBackground(painter);
    QRect symbol(QPoint(), iconSize());
    symbol.moveCenter(rect().center());
    icon().paint(&painter, symbol, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

void SymbolButton::paintBackground(QPainter& painter) const {
    if (isEnabled() && (isDown() || underMouse())) {
        QColor shade = palette().color(QPalette::ButtonText);
        shade.setAlphaF(isDown() ? 0.16F : 0.08F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(shade);
        painter.drawRoundedRect(rect(), faceRadius, faceRadius);
    }
    if (hasFocus()) {
        constexpr qreal width = 2;
        painter.setPen(QPen(accentColor(palette()), width));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), faceRadius - 1,
                                faceRadius - 1);
    }
}

} // namespace hollowfernpike
