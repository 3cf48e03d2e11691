#include "ui/GenericApplicationIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace hollowfernpike {

namespace {

class GenericIconEngine final : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette palette = QGuiApplication::palette();
        const QRectF square = centeredSquare(rect);
        const qreal unit = square.width() / 16;
        const QRectF window = square.adjusted(unit, 2 * unit, -unit, -2 * unit);
        QPainterPath outline;
        outline.addRoundedRect(window, unit, unit);

        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->fillPath(outline, palette.color(group, QPalette::Base));
        painter->setClipPath(outline);
        painter->fillRect(QRectF(window.topLeft(), QSizeF(window.width(), 3 * unit)),
                          palette.color(group, QPalette::Highlight));
        painter->setClipping(false);
        painter->strokePath(outline, QPen(palette.color(group, QPalette::WindowText), unit / 2));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new GenericIconEngine(*this); }

private:
    static QRectF centeredSquare(const QRectF& rect) {
        const qreal side = qMin(rect.width(), rect.height());
        QRectF square(0, 0, side, side);
        square.moveCenter(rect.center());
        return square;
    }
};

} // namespace

QIcon genericApplicationIcon() {
    return QIcon(new GenericIconEngine);
}

} // namespace hollowfernpike
