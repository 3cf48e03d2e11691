#include "platform/qt/status/StatusSymbol.h"

#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

/// Relative luminance, as the Web Content Accessibility Guidelines define it.
double luminance(QRgb colour) {
    const auto linear = [](int value) {
        const double part = value / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

double contrast(QRgb one, QRgb other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QImage picture(int size) {
    return qt::statusSymbol("keyboard").pixmap(size, size).toImage();
}

/// How many of the picture's pixels have the contrast to this ground that letters need.
int standingOut(const QImage& image, QRgb ground) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool isSolid = qAlpha(image.pixel(x, y)) == 255;
            count += isSolid && contrast(image.pixel(x, y), ground) >= 4.5 ? 1 : 0;
        }
    }
    return count;
}

class StatusSymbolSizeTest : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Each, StatusSymbolSizeTest, testing::Values(16, 22, 24, 32, 48, 64));

TEST_P(StatusSymbolSizeTest, IsDrawnForIt) {
    EXPECT_EQ(picture(GetParam()).size(), QSize(GetParam(), GetParam()));
}

TEST_P(StatusSymbolSizeTest, StandsOutFromLightAndDarkPanels) {
    const auto image = picture(GetParam());
    const int enough = GetParam() * GetParam() / 6;
    for (const QRgb ground : {0xFFFFFFFF, 0xFFF6F5F4, 0xFF2D2D2D, 0xFF000000}) {
        EXPECT_GT(standingOut(image, ground), enough) << std::hex << ground;
    }
}

/// A transparent picture of this size into which the symbol is painted.
QImage painted(const QSize& size, qreal scale) {
    QPixmap canvas(size * scale);
    canvas.setDevicePixelRatio(scale);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    qt::statusSymbol("keyboard").paint(&painter, QRect(QPoint(), size));
    painter.end();
    canvas.setDevicePixelRatio(1);
    return canvas.toImage();
}

TEST(StatusSymbolTest, IsPaintedPixelByPixelAtEveryScale) {
    EXPECT_EQ(painted({22, 22}, 1), picture(22));
    EXPECT_EQ(painted({22, 22}, 2), picture(44));
    EXPECT_EQ(painted({16, 16}, 1.5), picture(24));
}

TEST(StatusSymbolTest, IsPaintedIntoTheMiddleOfARoomThatIsNotSquare) {
    for (const QSize& size : {QSize(30, 20), QSize(20, 30)}) {
        const QImage image = painted(size, 1);
        const QPoint corner((size.width() - 20) / 2, (size.height() - 20) / 2);
        EXPECT_EQ(image.copy(QRect(corner, QSize(20, 20))), picture(20));
        EXPECT_EQ(standingOut(image, 0xFFFFFFFF), standingOut(picture(20), 0xFFFFFFFF));
    }
}

TEST(StatusSymbolTest, IsTransparentAroundTheDrawing) {
    EXPECT_EQ(qAlpha(picture(64).pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(picture(64).pixel(63, 63)), 0);
}

TEST(StatusSymbolTest, IsNullForAnUnknownName) {
    EXPECT_TRUE(qt::statusSymbol("no such symbol").isNull());
    EXPECT_TRUE(qt::statusSymbol("").isNull());
}

} // namespace
} // namespace hollowfernpike
