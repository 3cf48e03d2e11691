#include "ui/Symbols.h"

#include "ui/SystemColors.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

#include <utility>

namespace hollowfernpike {

namespace {

constexpr auto format = "svg";

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

/// The drawing's own colour counts for nothing: only where it covers. Read through the toolkit's
/// plug-in, whose library is in memory only once a window shows symbols.
QPixmap drawn(const QString& file, const QSize& size, const QColor& color) {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QImageReader drawing(file, format);
    const QSize fitting = drawing.size().scaled(size, Qt::KeepAspectRatio);
    drawing.setScaledSize(fitting);
    QPainter painter(&pixmap);
    painter.drawImage((size.width() - fitting.width()) / 2, (size.height() - fitting.height()) / 2,
                      drawing.read());
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    return pixmap;
}

class SymbolEngine final : public QIconEngine {
public:
    SymbolEngine(QString file, SymbolTint tint) : file_(std::move(file)), tint_(tint) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatioF();
        QPixmap picture = pixmap((QSizeF(rect.size()) * scale).toSize(), mode, state);
        picture.setDevicePixelRatio(scale);
        painter->drawPixmap(rect, picture);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        const QColor color = colorOf(tint_, mode);
        const QString key = QStringLiteral("%1 %2x%3 %4")
                                .arg(file_)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(color.name(QColor::HexArgb));
        QPixmap picture;
        if (!QPixmapCache::find(key, &picture)) {
            picture = drawn(file_, size, color);
            QPixmapCache::insert(key, picture);
        }
        return picture;
    }

    QIconEngine* clone() const override { return new SymbolEngine(*this); }

private:
    QString file_;
    SymbolTint tint_;
};

} // namespace

QIcon symbolImage(std::string_view name, SymbolTint tint) {
    const QString file = ":/symbols/" + QString::fromUtf8(name) + ".svg";
    return QImageReader(file, format).canRead() ? QIcon(new SymbolEngine(file, tint)) : QIcon();
}

} // namespace hollowfernpike
