#include "package/InstalledProgram.h"

#include <QGuiApplication>
#include <QIcon>

#include <array>
#include <filesystem>
#include <set>
#include <string>

#include <gmock/gmock.h>

namespace hollowfernpike::test {
namespace {

const std::filesystem::path scalable =
    "/usr/share/icons/hicolor/scalable/apps/app.hollowfernpike.Hollowfernpike.svg";

/// The icons that a desktop finds on a system with the package.
class InstalledIconTest : public testing::Test {
protected:
    InstalledIconTest() {
        QIcon::setThemeSearchPaths({"/usr/share/icons"});
        QIcon::setThemeName("hicolor");
    }

    /// How many colours the opaque pixels of the picture have.
    static std::size_t colors(const QIcon& icon, int size) {
        const auto picture = icon.pixmap(size, size).toImage();
        EXPECT_EQ(picture.width(), size);
        std::set<QRgb> found;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (qAlpha(picture.pixel(x, y)) == 255) {
                    found.insert(picture.pixel(x, y));
                }
            }
        }
        return found.size();
    }

    InstalledPackage package;
    TemporaryDirectory runtime;
    const bool isOffScreen = qputenv("QT_QPA_PLATFORM", "offscreen") &&
                             qputenv("XDG_RUNTIME_DIR", runtime.path().c_str());
    int argumentCount = 1;
    std::string name = "icon";
    std::array<char*, 2> arguments{name.data(), nullptr};
    QGuiApplication application{argumentCount, arguments.data()};
};

TEST_F(InstalledIconTest, ThereIsOneForEverySize) {
    const auto icon = QIcon::fromTheme(installed::identifier);
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size))) << size;
        EXPECT_GT(colors(icon, size), 3U) << size;
    }
    EXPECT_THAT(package.files(), testing::Contains(scalable));
}

TEST_F(InstalledIconTest, ThereIsASymbolInOneColorForPanels) {
    const auto icon = QIcon::fromTheme(QString::fromUtf8(installed::identifier) + "-symbolic");
    EXPECT_EQ(colors(icon, 16), 1U);
    EXPECT_EQ(colors(icon, 32), 1U);
}

} // namespace
} // namespace hollowfernpike::test
