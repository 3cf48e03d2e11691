#include "ui/icons/Symbols.h"

#include "ui/icons/DrawnIcon.h"
#include "ui/parts/SystemColors.h"

#include <QGuiApplication>
#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPen>

#include <vector>

namespace hollowfernpike {

namespace {

/// Where a line turns, and the radius in which it does.
struct Corner {
    double x;
    double y;
    double radius = 0;

    QPointF point() const { return {x, y}; }
};

/// From corner to corner; from the last one back to the first if it is closed.
struct Line {
    std::vector<Corner> corners;
    bool isClosed = false;
};

Line dot(double x, double y) {
    return {{{x, y}, {x, y + 0.01}}};
}

Line circle() {
    return {{{2, 2, 8}, {18, 2, 8}, {18, 18, 8}, {2, 18, 8}}, true};
}

/// A box that is open at the top, for an arrow.
Line tray() {
    return {{{7, 7.5}, {4, 7.5, 1.5}, {4, 18, 1.5}, {16, 18, 1.5}, {16, 7.5, 1.5}, {13, 7.5}}};
}

std::vector<Line> linesOf(Symbol symbol) {
    switch (symbol) {
    case Symbol::checkmarkCircle:
        return {circle(), {{{6.5, 10.4}, {8.9, 13}, {13.5, 7.25}}}};
    case Symbol::exclamationmarkTriangle:
        return {{{{10, 2.75}, {18.25, 17}, {1.75, 17}}, true},
                {{{10, 7.75}, {10, 12.25}}},
                dot(10, 14.5)};
    case Symbol::infoCircle:
        return {circle(), {{{10, 9.5}, {10, 14}}}, dot(10, 6)};
    case Symbol::pencil:
        return {
            {{{3.75, 13.25}, {15.1, 1.9, 2.12}, {18.1, 4.9, 2.12}, {6.75, 16.25}, {2.75, 17.25}},
             true},
            {{{11.75, 5.25}, {14.75, 8.25}}}};
    case Symbol::squareAndArrowDown:
        return {tray(), {{{10, 1.75}, {10, 12.75}}}, {{{6.75, 9.5}, {10, 12.75}, {13.25, 9.5}}}};
    case Symbol::squareAndArrowUp:
        return {tray(), {{{10, 12.25}, {10, 1.75}}}, {{{6.75, 5}, {10, 1.75}, {13.25, 5}}}};
    case Symbol::trash:
        return {{{{3, 5.25}, {17, 5.25}}},
                {{{7.25, 5.25}, {7.25, 2.25, 1.25}, {12.75, 2.25, 1.25}, {12.75, 5.25}}},
                {{{4.5, 5.25}, {5.35, 17.65, 1.4}, {14.65, 17.65, 1.4}, {15.5, 5.25}}},
                {{{8.25, 8.5}, {8.5, 14.5}}},
                {{{11.75, 8.5}, {11.5, 14.5}}}};
    }
    return {};
}

/// A right angle becomes a quarter of a circle.
void turn(QPainterPath& path, const QPointF& before, const Corner& corner, const QPointF& after) {
    constexpr double lever = 0.5523;
    const auto apart = [&corner](double distance, const QPointF& other) {
        const QLineF way(corner.point(), other);
        return way.pointAt(distance / way.length());
    };
    path.lineTo(apart(corner.radius, before));
    path.cubicTo(apart(corner.radius * (1 - lever), before),
                 apart(corner.radius * (1 - lever), after), apart(corner.radius, after));
}

void append(QPainterPath& path, const Line& line) {
    const auto& corners = line.corners;
    const QPointF first = corners.front().point();
    const QPointF last = corners.back().point();
    path.moveTo(line.isClosed ? (first + last) / 2 : first);
    for (std::size_t index = 0; index < corners.size(); ++index) {
        turn(path, index == 0 ? last : corners[index - 1].point(), corners[index],
             index + 1 == corners.size() ? first : corners[index + 1].point());
    }
    if (line.isClosed) {
        path.closeSubpath();
    }
}

/// The lines of a symbol on a grid of 20 by 20, for a pen with round ends.
QPainterPath symbolLines(Symbol symbol) {
    QPainterPath path;
    for (const Line& line : linesOf(symbol)) {
        append(path, line);
    }
    return path;
}

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
