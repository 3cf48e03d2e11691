#include "platform/qt/KeyboardDrawing.h"

#include <QRect>

#include <algorithm>

namespace hollowfernpike::qt {

namespace {

// Dark on light inside, light on nothing outside: legible on light and on dark panels alike.
constexpr QRgb light = 0xFFF4F4F4;
constexpr QRgb dark = 0xFF303338;
constexpr QRgb nothing = 0;

constexpr int smallestSide = 16;
constexpr int columns = 4;
constexpr int rows = 3;

/// Pixel by pixel, on whole pixels: every edge is sharp in every size, and no library for drawings
/// stays in memory for months because of this one.
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

    /// As many keys as one.
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

} // namespace

QImage keyboardDrawing(int side) {
    const QImage image = Keyboard(std::max(side, smallestSide)).image();
    return side < image.width() ? image.scaled(side, side) : image;
}

} // namespace hollowfernpike::qt
