#pragma once

#include <QIcon>
#include <QPainter>
#include <QWidget>

namespace hollowfernpike {

/// Shows an icon as large as fits, scaled up or down in proportion and centred. Main thread only.
class IconView final : public QWidget {
public:
    explicit IconView(QWidget* parent = nullptr) : QWidget(parent) {}

    const QIcon& icon() const { return icon_; }

    /// An empty icon shows nothing.
    void setIcon(const QIcon& icon) {
        icon_ = icon;
        update();
    }

    /// A dimmed icon is of something that cannot be used.
    bool isDimmed() const { return isDimmed_; }
    void setDimmed(bool isDimmed) {
        isDimmed_ = isDimmed;
        update();
    }

private:
    void paintEvent(QPaintEvent*) override {
        const QPixmap pixmap =
            icon_.pixmap(size(), devicePixelRatioF(), isDimmed_ ? QIcon::Disabled : QIcon::Normal);
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

    QIcon icon_;
    bool isDimmed_ = false;
};

} // namespace hollowfernpike
