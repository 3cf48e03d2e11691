#pragma once

#include <QImage>
#include <QWidget>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// A view in a picture with many points to each of its units.
inline QImage enlarged(QWidget& view) {
    constexpr int scale = 8;
    QImage image(view.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(view.palette().color(QPalette::Window));
    view.render(&image);
    return image;
}

/// The corners are round, with this radius.
inline void expectCorners(QWidget& view, double radius) {
    constexpr double antialiasing = 0.5;
    const QImage image = enlarged(view);
    const QColor straight = image.pixelColor(0, image.height() / 2);
    int row = 0;
    while (image.pixelColor(0, row) != straight) {
        ++row;
    }
    EXPECT_NEAR(row / image.devicePixelRatio(), radius - antialiasing, antialiasing);
}

} // namespace hollowfernpike::test
