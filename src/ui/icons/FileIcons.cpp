#include "ui/icons/FileIcons.h"

#include "platform/Services.h"
#include "ui/icons/DrawnIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <utility>

namespace hollowfernpike {

namespace {

class LazyIconEngine final : public QIconEngine {
public:
    explicit LazyIconEngine(std::string path) : path_(std::move(path)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return icon().pixmap(size, 1.0, mode, state);
    }

    QIconEngine* clone() const override { return new LazyIconEngine(*this); }

private:
    const QIcon& icon() {
        if (icon_.isNull()) {
            icon_ = iconForFile(path_);
        }
        return icon_;
    }

    std::string path_;
    QIcon icon_;
};

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

/// Tries to draw it, because an icon that has a name and a size may still be an unreadable file.
bool showsSomething(const QIcon& icon) {
    return !icon.isNull() && !icon.pixmap(QSize(32, 32), 1.0).isNull();
}

QIcon fromTheme(const std::string& name) {
    return name.empty() ? QIcon() : QIcon::fromTheme(QString::fromStdString(name));
}

QIcon fromImage(const std::string& file) {
    return file.empty() ? QIcon() : QIcon(QString::fromStdString(file));
}

} // namespace

QIcon iconFor(const platform::FileIcon& icon) {
    if (QIcon themed = fromTheme(icon.themeName); showsSomething(themed)) {
        return themed;
    }
    if (QIcon image = fromImage(icon.imageFile); showsSomething(image)) {
        return image;
    }
    if (QIcon executable = fromTheme("application-x-executable"); showsSomething(executable)) {
        return executable;
    }
    return genericApplicationIcon();
}

QIcon iconForFile(const std::string& path) {
    return iconFor(platform::services().applicationBundles.iconForFile(path));
}

QIcon genericApplicationIcon() {
    return drawnIcon(drawWindow);
}

QIcon lazyIconForFile(std::string path) {
    return QIcon(new LazyIconEngine(std::move(path)));
}

} // namespace hollowfernpike
