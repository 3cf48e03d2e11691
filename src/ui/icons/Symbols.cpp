#include "ui/icons/Symbols.h"

#include "ui/icons/DrawnIcon.h"
#include "ui/icons/SymbolLines.h"
#include "ui/parts/SystemColors.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPen>

namespace hollowfernpike {

namespace {

QColor colorOf(SymbolTint tint, QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled) {
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    }
    if (mode == QIcon::Selected) {
        return palette.color(QPalette::HighlightedText);
    }
    switch (tint) {
    case SymbolTint::accent:
        return accentTextColor(palette);
    case SymbolTint::red:
        return systemRedColor(palette);
    case SymbolTint::text:
        break;
    }
    return palette.color(QPalette::ButtonText);
}

void drawSymbol(QPainter& painter, const QRectF& square, Symbol symbol, const QColor& color) {
    constexpr qreal grid = 20;
    constexpr qreal penWidth = 1.5;
    painter.translate(square.topLeft());
    painter.scale(square.width() / grid, square.height() / grid);
    painter.strokePath(symbolLines(symbol),
                       QPen(color, penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

} // namespace

QIcon symbolImage(Symbol symbol, SymbolTint tint) {
    return drawnIcon([symbol, tint](QPainter& painter, const QRectF& square, QIcon::Mode mode) {
        drawSymbol(painter, square, symbol, colorOf(tint, mode));
    });
}

} // namespace hollowfernpike
