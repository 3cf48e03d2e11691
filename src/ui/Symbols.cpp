#include "ui/Symbols.h"

#include "ui/SymbolLines.h"
#include "ui/SystemColors.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPen>

#include <algorithm>

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

class SymbolEngine final : public QIconEngine {
public:
    SymbolEngine(Symbol symbol, SymbolTint tint) : symbol_(symbol), tint_(tint) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        constexpr qreal grid = 20;
        constexpr qreal penWidth = 1.5;
        const qreal unit = std::min(rect.width(), rect.height()) / grid;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(grid, grid) * unit / 2);
        painter->scale(unit, unit);
        painter->strokePath(symbolLines(symbol_), QPen(colorOf(tint_, mode), penWidth,
                                                       Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new SymbolEngine(*this); }

private:
    Symbol symbol_;
    SymbolTint tint_;
};

} // namespace

QIcon symbolImage(Symbol symbol, SymbolTint tint) {
    return QIcon(new SymbolEngine(symbol, tint));
}

} // namespace hollowfernpike
