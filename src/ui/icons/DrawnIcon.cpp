#include "ui/icons/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

class DrawnIconEngine final : public QIconEngine {
public:
    explicit DrawnIconEngine(DrawIcon draw) : draw_(std::move(draw)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal side = std::min(rect.width(), rect.height());
        QRectF square(0, 0, side, side);
        square.moveCenter(QRectF(rect).center());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        draw_(*painter, square, mode);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawnIconEngine(*this); }

private:
    DrawIcon draw_;
};

} // namespace

QIcon drawnIcon(DrawIcon draw) {
    return QIcon(new DrawnIconEngine(std::move(draw)));
}

} // namespace hollowfernpike
