#include "platform/qt/status/StatusSymbol.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QRect>
#include <QStandardPaths>

#include <algorithm>

namespace hollowfernpike::qt {

namespace {

// Dark keys on a light body with a dark outline: legible on light and on dark panels alike.
constexpr QRgb light = 0xFFF4F4F4;
constexpr QRgb dark = 0xFF303338;
constexpr QRgb nothing = 0;

constexpr int smallestSide = 16;
constexpr int columns = 4;
constexpr int rows = 3;

/// Drawn pixel by pixel: every edge is sharp in every size, and no drawing library stays in memory
/// for months.
class Keyboard {
public:
    explicit Keyboard(int size) : image_(size, size, QImage::Format_ARGB32_Premultiplied) {
        image_.fill(nothing);
        frame();
        for (int row = 0; row < rows - 1; ++row) {
            for (int column = 0; column < columns; ++column) {
                keys(row, column, 1);
            }
        }
        keys(rows - 1, 0, 1);
        keys(rows - 1, 1, columns - 2); // the space bar
        keys(rows - 1, columns - 1, 1);
    }

    const QImage& image() const { return image_; }

private:
    static constexpr int across(int keySize, int stroke, int count) {
        return count * keySize + (count + 3) * stroke; // two edges, and a gap on each side of a key
    }

    void frame() {
        const QRect body(corner_,
                         QSize(across(key_, stroke_, columns), across(key_, stroke_, rows)));
        const QSize dot(stroke_, stroke_);
        fill(body, dark);
        fill(body.marginsRemoved({stroke_, stroke_, stroke_, stroke_}), light);
        for (const int x : {body.left(), body.right() + 1 - stroke_}) {
            fill({QPoint(x, body.top()), dot}, nothing);
            fill({QPoint(x, body.bottom() + 1 - stroke_), dot}, nothing);
        }
    }

    /// Draws `count` keys as one wide key.
    void keys(int row, int column, int count) {
        const int step = key_ + stroke_;
        const QPoint first = corner_ + QPoint(2 * stroke_, 2 * stroke_);
        fill({first + QPoint(column * step, row * step), QSize(count * step - stroke_, key_)},
             dark);
    }

    void fill(const QRect& part, QRgb colour) {
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                image_.setPixel(x, y, colour);
            }
        }
    }

    QImage image_;
    int stroke_ = image_.width() / smallestSide;
    int key_ = (image_.width() - across(0, stroke_, columns)) / columns;
    QPoint corner_{(image_.width() - across(key_, stroke_, columns)) / 2,
                   (image_.height() - across(key_, stroke_, rows)) / 2};
};

QImage keyboardDrawing(int side) {
    const QImage image = Keyboard(std::max(side, smallestSide)).image();
    return side < image.width() ? image.scaled(side, side) : image;
}

constexpr int panelSizes[] = {16, 22, 24, 32, 48, 64};

/// The name of our symbol if it is installed, else empty.
QString installedSymbol() {
    const QString name = QGuiApplication::desktopFileName() + "-symbolic";
    const QString file = "icons/hicolor/symbolic/apps/" + name + ".svg";
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty() ? QString()
                                                                                       : name;
}

/// Gives the installed symbol's name to panels that paint it in their own colour; for all others,
/// draws the symbol. Not QIcon::fromTheme(): it would read the whole theme and keep it.
class Engine final : public QIconEngine {
public:
    QString iconName() override { return name_; }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        QList<QSize> sizes;
        for (const int size : panelSizes) {
            sizes.emplace_back(size, size);
        }
        return sizes;
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        return QPixmap::fromImage(keyboardDrawing(std::min(size.width(), size.height())));
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatioF();
        const int side = std::min(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        QPixmap picture = pixmap((QSizeF(square.size()) * scale).toSize(), mode, state);
        picture.setDevicePixelRatio(scale);
        painter->drawPixmap(square.topLeft(), picture);
    }

    QIconEngine* clone() const override { return new Engine(*this); }

private:
    QString name_ = installedSymbol();
};

} // namespace

QIcon statusSymbol(const QString& name) {
    return name == "keyboard" ? QIcon(new Engine) : QIcon();
}

} // namespace hollowfernpike::qt
