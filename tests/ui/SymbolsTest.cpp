#include "ui/Symbols.h"

#include "ui/Colors.h"
#include "ui/SystemColors.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

constexpr std::string_view names[] = {
    "checkmark.circle", "exclamationmark.triangle", "info.circle",         "keyboard",
    "pencil",           "square.and.arrow.down",    "square.and.arrow.up", "trash",
};

QImage picture(const QIcon& icon, int side = 20, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(QSize(side, side), 1.0, mode)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
}

/// The colour of the pixel that is covered best; antialiasing dilutes the others.
QColor inkOf(const QImage& image) {
    QColor best(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (const QColor color = image.pixelColor(x, y); color.alpha() > best.alpha()) {
                best = color;
            }
        }
    }
    best.setAlpha(255);
    return best;
}

/// The smallest rectangle that holds all that is drawn.
QRect drawnPart(const QImage& image) {
    QRect part;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 0) {
                part |= QRect(x, y, 1, 1);
            }
        }
    }
    return part;
}

TEST(SymbolsTest, EveryNameHasADrawingOfItsOwn) {
    std::vector<QImage> pictures;
    for (const std::string_view name : names) {
        const QImage image = picture(symbolImage(name));
        ASSERT_EQ(image.size(), QSize(20, 20)) << name;
        EXPECT_FALSE(drawnPart(image).isEmpty()) << name;
        for (const QImage& other : pictures) {
            EXPECT_NE(image, other) << name;
        }
        pictures.push_back(image);
    }
}

TEST(SymbolsTest, AnUnknownNameHasNone) {
    EXPECT_TRUE(symbolImage("square.and.arrow.left").isNull());
    EXPECT_TRUE(symbolImage("").isNull());
}

TEST(SymbolsTest, AreOfOneSizeAndInTheMiddleOfTheirGrid) {
    for (const std::string_view name : names) {
        const QRect part = drawnPart(picture(symbolImage(name), 200));
        EXPECT_GE(std::max(part.width(), part.height()), 140) << name;
        EXPECT_LE(std::max(part.width(), part.height()), 180) << name;
        EXPECT_NEAR(part.center().x(), 99.5, 5) << name;
        EXPECT_NEAR(part.center().y(), 99.5, 5) << name;
    }
}

TEST(SymbolsTest, AreDrawnInTheColourOfText) {
    for (const QPalette& palette : {test::lightPalette(), test::darkPalette()}) {
        const test::ApplicationPalette current(palette);
        EXPECT_EQ(inkOf(picture(symbolImage("keyboard"), 64)), palette.color(QPalette::ButtonText));
    }
}

TEST(SymbolsTest, AreDrawnInTheirTint) {
    const QPalette palette = test::lightPalette();
    const test::ApplicationPalette current(palette);
    EXPECT_EQ(inkOf(picture(symbolImage("trash", SymbolTint::red), 64)), systemRedColor(palette));
    EXPECT_EQ(inkOf(picture(symbolImage("trash", SymbolTint::accent), 64)),
              QColor(accentTextColor(palette).rgb()));
}

TEST(SymbolsTest, FollowAPaletteThatComesAfterThem) {
    const test::ApplicationPalette light(test::lightPalette());
    const QIcon icon = symbolImage("pencil");
    const QImage before = picture(icon);
    const test::ApplicationPalette dark(test::darkPalette());
    EXPECT_NE(picture(icon), before);
    EXPECT_EQ(inkOf(picture(icon, 64)), test::darkPalette().color(QPalette::ButtonText));
}

TEST(SymbolsTest, StandBackWhenDisabled) {
    QPalette palette = test::lightPalette();
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(150, 150, 150));
    const test::ApplicationPalette current(palette);
    EXPECT_EQ(inkOf(picture(symbolImage("trash", SymbolTint::red), 64, QIcon::Disabled)),
              QColor(150, 150, 150));
}

TEST(SymbolsTest, AreSharpAtEveryScale) {
    for (const qreal scale : {1.0, 1.5, 2.0, 3.0}) {
        QImage canvas(QSize(20, 20) * scale, QImage::Format_ARGB32);
        canvas.setDevicePixelRatio(scale);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        symbolImage("trash").paint(&painter, QRect(0, 0, 20, 20));
        painter.end();
        const QImage drawnAtThatSize = picture(symbolImage("trash"), static_cast<int>(20 * scale));
        canvas.setDevicePixelRatio(1);
        EXPECT_EQ(canvas, drawnAtThatSize) << scale;
    }
}

} // namespace

} // namespace hollowfernpike
