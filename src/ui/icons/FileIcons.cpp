#include "ui/icons/FileIcons.h"

#include "platform/Services.h"
#include "ui/icons/DrawnIcon.h"
#include "ui/icons/IconReader.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOption>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include <private/qiconloader_p.h>

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

/// Grows when what was read may be outdated.
std::uint64_t& edition() {
    static std::uint64_t current = 1;
    return current;
}

// Not each widget: for each that asks to be drawn the toolkit looks at all of its siblings, a third
// of the time that a long list takes. A window draws those in it, but for opaque ones.
void redrawAll() {
    for (QWidget* const widget : QApplication::allWidgets()) {
        if (widget->isWindow() || widget->autoFillBackground() ||
            widget->testAttribute(Qt::WA_OpaquePaintEvent)) {
            widget->update();
        }
    }
}

/// The theme's file for this size. Empty if there is none, also for a name that would lead out of
/// the theme's folders.
std::string themeFile(const std::string& name, const QSize& size) {
    if (name.empty() || name.find('/') != std::string::npos) {
        return {};
    }
    const auto found = QIconLoader::instance()->loadIcon(QString::fromStdString(name));
    const auto* const entry = QIconLoaderEngine::entryForSize(found, size);
    return entry == nullptr ? std::string{} : entry->filename.toStdString();
}

/// The files that may hold the icon, best first.
std::vector<std::string> filesOf(const platform::FileIcon& icon, const QSize& size) {
    std::vector<std::string> files{themeFile(icon.themeName, size), icon.imageFile,
                                   themeFile("application-x-executable", size)};
    std::erase(files, std::string{});
    return files;
}

/// The icon that the desktop draws for this file; null if it does not.
QPixmap drawnByDesktop(const std::string& file, const QSize& size) {
    const auto drawing = platform::services().applicationBundles.drawIcon(
        file, std::min(size.width(), size.height()));
    if (!drawing) {
        return {};
    }
    const QImage image(drawing->bytes.data(), drawing->side, drawing->side,
                       QImage::Format_RGBA8888_Premultiplied);
    return QPixmap::fromImage(image.copy());
}

/// What copies of one icon share: where it comes from, and its image in each size that was drawn.
class FileImages : public std::enable_shared_from_this<FileImages> {
public:
    using Source = std::function<platform::FileIcon()>;

    explicit FileImages(Source source) : source_(std::move(source)) {}

    /// As far as it is known. Null until it has been read, unless another icon of these files has
    /// been, and where there is none to be read.
    QPixmap pixmap(const QSize& size) {
        Image& image = images_[{size.width(), size.height()}];
        if (std::exchange(image.edition, edition()) != edition() && !size.isEmpty()) {
            read(size, image.pixmap);
        }
        return image.pixmap;
    }

private:
    struct Image {
        std::uint64_t edition = 0; ///< that was looked for last
        QPixmap pixmap;
    };

    void read(const QSize& size, QPixmap& pixmap) {
        if (std::exchange(edition_, edition()) != edition()) {
            icon_ = source_();
        }
        if (!icon_.drawnFor.empty()) {
            pixmap = drawnByDesktop(icon_.drawnFor, size);
            return;
        }
        auto files = filesOf(icon_, size);
        const QString key = keyFor(files, size);
        QPixmapCache::find(key, &pixmap);
        readIcon(std::move(files), size,
                 [images = weak_from_this(), asked = edition(), size, key](const QImage& image) {
                     if (const auto alive = images.lock(); alive && asked == edition()) {
                         alive->take(size, key, image);
                     }
                 });
    }

    void take(const QSize& size, const QString& key, const QImage& image) {
        const auto pixmap = QPixmap::fromImage(image);
        QPixmapCache::insert(key, pixmap);
        auto& shown = images_[{size.width(), size.height()}].pixmap;
        if (pixmap.toImage() != shown.toImage()) { // of one format, which the file's may not be
            shown = pixmap;
            redrawAll();
        }
    }

    static QString keyFor(const std::vector<std::string>& files, const QSize& size) {
        QString key = QString::number(size.width()) + 'x' + QString::number(size.height());
        for (const auto& file : files) {
            key += '\n' + QString::fromStdString(file);
        }
        return key;
    }

    Source source_;
    std::uint64_t edition_ = 0; ///< of the icon
    platform::FileIcon icon_;
    std::map<std::pair<int, int>, Image> images_;
};

class FileIconEngine final : public QIconEngine {
public:
    explicit FileIconEngine(FileImages::Source source)
        : images_(std::make_shared<FileImages>(std::move(source))) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatio();
        QPixmap drawn = pixmap(rect.size() * scale, mode, state);
        drawn.setDevicePixelRatio(scale);
        QRectF target(QPointF(), drawn.deviceIndependentSize());
        target.moveCenter(QRectF(rect).center());
        painter->drawPixmap(target.topLeft(), drawn);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        const QPixmap image = images_->pixmap(size);
        if (image.isNull()) {
            return genericApplicationIcon().pixmap(size, 1.0, mode);
        }
        QStyleOption option;
        option.palette = QGuiApplication::palette();
        return mode == QIcon::Normal
                   ? image
                   : QApplication::style()->generatedIconPixmap(mode, image, &option);
    }

    QIconEngine* clone() const override { return new FileIconEngine(*this); }

private:
    std::shared_ptr<FileImages> images_;
};

} // namespace

QIcon iconFor(const platform::FileIcon& icon) {
    return QIcon(new FileIconEngine([icon] { return icon; }));
}

// An empty list stands for the system's folders, as they are now. The toolkit forgets what it knew
// of the themes in them.
void renewFileIcons() {
    QIcon::setThemeSearchPaths({});
    ++edition();
    redrawAll();
}

QIcon iconForFile(std::string path) {
    return QIcon(new FileIconEngine([path = std::move(path)] {
        return platform::services().applicationBundles.iconForFile(path);
    }));
}

QIcon genericApplicationIcon() {
    return drawnIcon(drawWindow);
}

} // namespace hollowfernpike
