#include "ui/icons/FileIcons.h"

#include "ui/Colors.h"
#include "ui/icons/ReadIcons.h"
#include "ui/window/WindowTest.h"

#include <QPainter>

namespace hollowfernpike::test {

namespace {

class LazyFileIconTest : public WindowTest {
protected:
    /// An image of a single colour at "/a.desktop".
    void giveIcon(Qt::GlobalColor color, int side) {
        QImage image(side, side, QImage::Format_ARGB32);
        image.fill(color);
        const std::string file = folder.path() / "icon.png";
        ASSERT_TRUE(image.save(QString::fromStdString(file)));
        desktop.applicationBundles.icons["/a.desktop"].imageFile = file;
    }

    TemporaryDirectory folder;
    QIcon icon = iconForFile("/a.desktop");
};

TEST_F(LazyFileIconTest, IsLookedForWhenItIsDrawn) {
    EXPECT_FALSE(icon.isNull());
    giveIcon(Qt::green, 32);
    EXPECT_EQ(readPixmap(icon, QSize(32, 32)).toImage().pixelColor(5, 5), QColor(Qt::green));
}

TEST_F(LazyFileIconTest, IsLookedForOnce) {
    giveIcon(Qt::green, 32);
    EXPECT_FALSE(readPixmap(icon, QSize(32, 32)).isNull());
    EXPECT_FALSE(readPixmap(icon, QSize(16, 16)).isNull());
    EXPECT_THAT(desktop.applicationBundles.iconsAsked, testing::SizeIs(1));
}

TEST_F(LazyFileIconTest, IsSharpAtEveryScale) {
    giveIcon(Qt::green, 64);
    const QPixmap pixmap = readPixmap(icon, QSize(32, 32), 2.0);
    EXPECT_EQ(pixmap.size(), QSize(64, 64));
    EXPECT_EQ(pixmap.devicePixelRatio(), 2.0);
}

TEST_F(LazyFileIconTest, CanBePainted) {
    giveIcon(Qt::green, 32);
    readPixmap(icon, QSize(32, 32));
    QImage canvas(32, 32, QImage::Format_ARGB32);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    icon.paint(&painter, QRect(0, 0, 32, 32));
    painter.end();
    EXPECT_EQ(canvas.pixelColor(16, 16), QColor(Qt::green));
}

TEST_F(LazyFileIconTest, ACopyShowsTheSame) {
    giveIcon(Qt::green, 32);
    QIcon copy = icon;
    copy.addPixmap(QPixmap(), QIcon::Disabled);
    EXPECT_EQ(readPixmap(copy, QSize(32, 32)).toImage().pixelColor(5, 5), QColor(Qt::green));
}

} // namespace

} // namespace hollowfernpike::test
