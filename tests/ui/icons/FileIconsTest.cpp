#include "ui/icons/FileIcons.h"
#include "ui/editor/EditorTest.h"
#include "ui/icons/IconView.h"
#include "ui/icons/ReadIcons.h"

#include "support/TemporaryDirectory.h"

#include <QPixmap>

#include <filesystem>
#include <fstream>

namespace hollowfernpike {

namespace {

using namespace test;

QPixmap plain(int side, Qt::GlobalColor color) {
    QPixmap pixmap(side, side);
    pixmap.fill(color);
    return pixmap;
}

QColor centre(const QImage& image) {
    return image.pixelColor(image.rect().center());
}

QColor centre(const QIcon& icon) {
    return centre(readPixmap(icon, QSize(32, 32)).toImage());
}

/// Among the fakes, with an icon theme that holds nothing but what the test puts there.
class FileIconsTest : public EditorTest {
protected:
    FileIconsTest() {
        std::filesystem::create_directories(theme() / "64x64");
        std::ofstream(theme() / "index.theme") << "[Icon Theme]\nName=Test\nDirectories=64x64\n"
                                               << "[64x64]\nSize=64\nType=Threshold\n";
        QIcon::setThemeSearchPaths({QString::fromStdString(directory_.path().string())});
        QIcon::setFallbackSearchPaths({});
        useTheme();
    }

    std::filesystem::path theme() const { return directory_.path() / "test"; }

    /// Reads the theme anew, so that what is in it now is found.
    static void useTheme() {
        QIcon::setThemeName("no such theme");
        QIcon::setThemeName("test");
    }

    void addToTheme(const QString& name, Qt::GlobalColor color) {
        plain(64, color).save(QString::fromStdString((theme() / "64x64").string()) + "/" + name +
                              ".png");
        useTheme();
    }

    std::string image(Qt::GlobalColor color) {
        const auto path = directory_.path() / "image.png";
        plain(64, color).save(QString::fromStdString(path.string()));
        return path.string();
    }

    std::string brokenImage() {
        const auto path = directory_.path() / "broken.png";
        std::ofstream(path) << "\x89PNG\r\n\x1a\n and no more";
        return path.string();
    }

    static bool isGeneric(const QIcon& icon) {
        return readPixmap(icon, QSize(32, 32)).toImage() ==
               genericApplicationIcon().pixmap(QSize(32, 32), 1.0).toImage();
    }

    TemporaryDirectory directory_;
};

TEST_F(FileIconsTest, TheThemeComesFirst) {
    addToTheme("mail", Qt::blue);
    EXPECT_EQ(centre(iconFor({.themeName = "mail", .imageFile = image(Qt::red)})),
              QColor(Qt::blue));
}

TEST_F(FileIconsTest, AnImageOfItsOwnIsUsedWhereTheThemeHasNone) {
    EXPECT_EQ(centre(iconFor({.themeName = "mail", .imageFile = image(Qt::red)})), QColor(Qt::red));
}

TEST_F(FileIconsTest, AnImageAloneIsUsed) {
    EXPECT_EQ(centre(iconFor({.themeName = {}, .imageFile = image(Qt::red)})), QColor(Qt::red));
}

TEST_F(FileIconsTest, WithoutBothItIsTheThemesExecutable) {
    addToTheme("application-x-executable", Qt::green);
    EXPECT_EQ(centre(iconFor({})), QColor(Qt::green));
}

TEST_F(FileIconsTest, WithoutAnythingItIsDrawn) {
    EXPECT_TRUE(isGeneric(iconFor({})));
    EXPECT_TRUE(isGeneric(iconFor({.themeName = "nowhere", .imageFile = "/nowhere.png"})));
}

TEST_F(FileIconsTest, AnImageThatCannotBeReadIsPassedOver) {
    EXPECT_TRUE(isGeneric(iconFor({.themeName = {}, .imageFile = brokenImage()})));
}

TEST_F(FileIconsTest, AThemeIconThatCannotBeReadIsPassedOver) {
    std::filesystem::copy_file(brokenImage(), theme() / "64x64" / "mail.png");
    useTheme();
    EXPECT_EQ(centre(iconFor({.themeName = "mail", .imageFile = image(Qt::red)})), QColor(Qt::red));
}

TEST_F(FileIconsTest, IsSharpOnADisplayOfTwiceTheDensity) {
    for (const QIcon& icon :
         {iconFor({.themeName = {}, .imageFile = image(Qt::red)}), iconFor({})}) {
        EXPECT_EQ(readPixmap(icon, QSize(32, 32), 2.0).size(), QSize(64, 64));
    }
}

TEST_F(FileIconsTest, TheDesktopDrawsAnIconInTheSizeThatIsAskedFor) {
    constexpr int side = 32;
    platform::IconPixels drawing{.side = side, .bytes = {}};
    for (int pixel = 0; pixel < side * side; ++pixel) { // red above, half transparent blue below
        const bool isAbove = pixel < side * side / 2;
        drawing.bytes.insert(drawing.bytes.end(), {static_cast<std::uint8_t>(isAbove ? 255 : 0), 0,
                                                   static_cast<std::uint8_t>(isAbove ? 0 : 128),
                                                   static_cast<std::uint8_t>(isAbove ? 255 : 128)});
    }
    services_.applicationBundles.drawings["/Applications/Mail.app"] = drawing;
    services_.applicationBundles.icons["/Applications/Mail.app"].drawnFor =
        "/Applications/Mail.app";
    const auto icon = iconForFile("/Applications/Mail.app");
    const auto image = icon.pixmap(QSize(side, side), 1.0).toImage();
    EXPECT_EQ(image.size(), QSize(side, side));
    EXPECT_EQ(image.pixelColor(3, 3), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(3, side - 3), QColor(0, 0, 255, 128));
    EXPECT_EQ(icon.pixmap(QSize(16, 16), 1.0).toImage(),
              genericApplicationIcon().pixmap(QSize(16, 16), 1.0).toImage())
        << "the desktop draws it in one size alone";
}

TEST_F(FileIconsTest, TheIconOfAPathIsTheOneOfItsApplication) {
    services_.applicationBundles.icons["/Applications/Mail.app"] = {.themeName = {},
                                                                    .imageFile = image(Qt::red)};
    EXPECT_EQ(centre(iconForFile("/Applications/Mail.app")), QColor(Qt::red));
}

TEST_F(FileIconsTest, APathWithoutApplicationHasTheGenericIcon) {
    EXPECT_TRUE(isGeneric(iconForFile("/nowhere")));
}

TEST_F(FileIconsTest, TheDrawnIconShowsInLightAndInDark) {
    const QPalette before = QGuiApplication::palette();
    for (const auto& [background, text] :
         {std::pair(Qt::white, Qt::black), std::pair(Qt::black, Qt::white)}) {
        QPalette palette(background);
        palette.setColor(QPalette::Base, background);
        palette.setColor(QPalette::WindowText, text);
        QGuiApplication::setPalette(palette);
        const QImage drawn = genericApplicationIcon().pixmap(QSize(64, 64), 1.0).toImage();
        EXPECT_EQ(drawn.pixelColor(32, 40), QColor(background));
        EXPECT_EQ(drawn.pixelColor(0, 0).alpha(), 0);
        EXPECT_EQ(drawn.pixelColor(4, 40), QColor(text));
    }
    QGuiApplication::setPalette(before);
}

class IconViewTest : public FileIconsTest {
protected:
    /// What a view of this size paints on white.
    static QImage painted(const QIcon& icon, const QSize& size) {
        IconView view;
        view.resize(size);
        view.setIcon(icon);
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        view.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
        return image;
    }
};

TEST_F(IconViewTest, ShowsNothingWithoutIcon) {
    const QImage image = painted(QIcon(), QSize(32, 32));
    EXPECT_EQ(centre(image), QColor(Qt::white));
}

TEST_F(IconViewTest, ScalesALargeIconDown) {
    const QImage image = painted(plain(300, Qt::red), QSize(32, 32));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(31, 31), QColor(Qt::red));
}

TEST_F(IconViewTest, ScalesASmallIconUp) {
    const QImage image = painted(plain(8, Qt::red), QSize(32, 32));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(31, 31), QColor(Qt::red));
}

TEST_F(IconViewTest, KeepsTheProportionsAndCentres) {
    QPixmap wide(64, 32);
    wide.fill(Qt::red);
    const QImage image = painted(wide, QSize(32, 32));
    EXPECT_EQ(image.pixelColor(0, 16), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(16, 4), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(16, 27), QColor(Qt::white));
}

} // namespace
} // namespace hollowfernpike
