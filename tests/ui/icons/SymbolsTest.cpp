#include "ui/icons/Symbols.h"

#include "ui/Colors.h"
#include "ui/parts/SystemColors.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

constexpr Symbol symbols[] = {
    Symbol::checkmarkCircle,    Symbol::exclamationmarkTriangle, Symbol::infoCircle, Symbol::pencil,
    Symbol::squareAndArrowDown, Symbol::squareAndArrowUp,        Symbol::trash,
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

TEST(SymbolsTest, EachHasADrawingOfItsOwn) {
    std::vector<QImage> pictures;
    for (const Symbol symbol : symbols) {
        const QImage image = picture(symbolImage(symbol));
        ASSERT_EQ(image.size(), QSize(20, 20)) << int(symbol);
        EXPECT_FALSE(drawnPart(image).isEmpty()) << int(symbol);
        for (const QImage& other : pictures) {
            EXPECT_NE(image, other) << int(symbol);
        }
        pictures.push_back(image);
    }
}

TEST(SymbolsTest, AreOfOneSizeAndInTheMiddleOfTheirGrid) {
    for (const Symbol symbol : symbols) {
        const QRect part = drawnPart(picture(symbolImage(symbol), 200));
        EXPECT_GE(std::max(part.width(), part.height()), 140) << int(symbol);
        EXPECT_LE(std::max(part.width(), part.height()), 180) << int(symbol);
        EXPECT_NEAR(part.center().x(), 99.5, 5) << int(symbol);
        EXPECT_NEAR(part.center().y(), 99.5, 5) << int(symbol);
    }
}

// By points that only one of two drawings covers, in hundredths of the side.
TEST(SymbolsTest, ShowWhatTheyAreCalled) {
    const auto covers = [](Symbol symbol, int x, int y) {
        return picture(symbolImage(symbol), 100).pixelColor(x, y).alpha() > 0;
    };
    struct Shape {
        Symbol symbol;
        Symbol other;
        QPoint own;
    };
    for (const auto& [symbol, other, own] :
         {Shape{Symbol::squareAndArrowUp, Symbol::squareAndArrowDown, {34, 25}}, // the tip above
          Shape{Symbol::squareAndArrowDown, Symbol::squareAndArrowUp, {34, 47}}, // the tip inside
          Shape{Symbol::pencil, Symbol::trash, {14, 86}},               // the tip at the lower left
          Shape{Symbol::trash, Symbol::pencil, {25, 26}},               // the lid
          Shape{Symbol::checkmarkCircle, Symbol::infoCircle, {44, 65}}, // the angle of the mark
          Shape{Symbol::infoCircle, Symbol::checkmarkCircle, {50, 30}}}) { // the dot
        EXPECT_TRUE(covers(symbol, own.x(), own.y())) << int(symbol);
        EXPECT_FALSE(covers(other, own.x(), own.y())) << int(other);
    }
}

TEST(SymbolsTest, AreDrawnInTheColourOfText) {
    for (const QPalette& palette : {test::lightPalette(), test::darkPalette()}) {
        const test::ApplicationPalette current(palette);
        EXPECT_EQ(inkOf(picture(symbolImage(Symbol::pencil), 64)),
                  palette.color(QPalette::ButtonText));
    }
}

TEST(SymbolsTest, AreDrawnInTheirTint) {
    const QPalette palette = test::lightPalette();
    const test::ApplicationPalette current(palette);
    EXPECT_EQ(inkOf(picture(symbolImage(Symbol::trash, SymbolTint::red), 64)),
              systemRedColor(palette));
    EXPECT_EQ(inkOf(picture(symbolImage(Symbol::trash, SymbolTint::accent), 64)),
              QColor(accentTextColor(palette).rgb()));
}

TEST(SymbolsTest, FollowAPaletteThatComesAfterThem) {
    const test::ApplicationPalette light(test::lightPalette());
    const QIcon icon = symbolImage(Symbol::pencil);
    const QImage before = picture(icon);
    const test::ApplicationPalette dark(test::darkPalette());
    EXPECT_NE(picture(icon), before);
    EXPECT_EQ(inkOf(picture(icon, 64)), test::darkPalette().color(QPalette::ButtonText));
}

TEST(SymbolsTest, StandBackWhenDisabled) {
    QPalette palette = test::lightPalette();
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(150, 150, 150));
    const test::ApplicationPalette current(palette);
    EXPECT_EQ(inkOf(picture(symbolImage(Symbol::trash, SymbolTint::red), 64, QIcon::Disabled)),
              QColor(150, 150, 150));
}

TEST(SymbolsTest, AreSharpAtEveryScale) {
    for (const qreal scale : {1.0, 1.5, 2.0, 3.0}) {
        QImage canvas(QSize(20, 20) * scale, QImage::Format_ARGB32);
        canvas.setDevicePixelRatio(scale);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        symbolImage(Symbol::trash).paint(&painter, QRect(0, 0, 20, 20));
        painter.end();
        const QImage drawnAtThatSize =
            picture(symbolImage(Symbol::trash), static_cast<int>(20 * scale));
        canvas.setDevicePixelRatio(1);
        EXPECT_EQ(canvas, drawnAtThatSize) << scale;
    }
}

} // namespace

} // namespace hollowfernpike
