#include "ui/icons/FileIcons.h"

#include "support/Files.h"
#include "support/TemporaryDirectory.h"
#include "ui/icons/IconImage.h"
#include "ui/icons/ReadIcons.h"
#include "ui/window/WindowTest.h"

#include <QBuffer>
#include <QImage>

#include <ctime>
#include <fstream>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>
#include <zlib.h>

namespace hollowfernpike::test {
namespace {

const std::string svgBegin = R"(<svg xmlns="http://www.w3.org/2000/svg" )"
                             R"(xmlns:xlink="http://www.w3.org/1999/xlink" )"
                             R"(width="32" height="32">)";
const std::string redSquare = R"(<rect width="32" height="32" fill="red"/>)";

std::string svg(const std::string& content) {
    return svgBegin + content + redSquare + "</svg>";
}

std::string pngOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes.toStdString();
}

/// A PNG whose header promises that many pixels.
std::string pngThatPromises(int side) {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(Qt::red);
    auto bytes = pngOf(image);
    for (const std::size_t place : {16U, 20U}) {
        for (std::size_t byte = 0; byte < 4; ++byte) {
            bytes[place + byte] = static_cast<char>((side >> (24 - 8 * byte)) & 0xFF);
        }
    }
    const auto* const header = reinterpret_cast<const Bytef*>(bytes.data());
    const auto sum = ::crc32(0, header + 12, 17);
    for (std::size_t byte = 0; byte < 4; ++byte) {
        bytes[29 + byte] = static_cast<char>((sum >> (24 - 8 * byte)) & 0xFF);
    }
    return bytes;
}

void writeGzip(const std::string& path, const std::string& begin, std::size_t blanks,
               const std::string& end) {
    auto* const file = ::gzopen(path.c_str(), "wb");
    ::gzwrite(file, begin.data(), static_cast<unsigned>(begin.size()));
    const std::string block(1 << 20, ' ');
    for (std::size_t written = 0; written < blanks; written += block.size()) {
        ::gzwrite(file, block.data(), static_cast<unsigned>(block.size()));
    }
    ::gzwrite(file, end.data(), static_cast<unsigned>(end.size()));
    ::gzclose(file);
}

/// Of work, not of waiting.
double secondsOfThisThread() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Icons that somebody has made to harm the program.
class HostileIconsTest : public WindowTest {
protected:
    HostileIconsTest() {
        QIcon::setThemeName("no such theme");
        QIcon::setFallbackThemeName("");
    }

    std::string file(const std::string& name, const std::string& contents) {
        const auto path = folder.path() / name;
        putFile(path, contents);
        return path.string();
    }

    std::string pipe(const std::string& name) {
        auto path = (folder.path() / name).string();
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        return path;
    }

    static QImage shown(const std::string& path) {
        return readPixmap(iconFor({.themeName = {}, .imageFile = path}), QSize(32, 32)).toImage();
    }

    static bool isRefused(const std::string& path) {
        return shown(path) == genericApplicationIcon().pixmap(QSize(32, 32), 1.0).toImage();
    }

    static bool isRed(const std::string& path) {
        return shown(path).pixelColor(16, 16) == QColor(Qt::red);
    }

    TemporaryDirectory folder;
};

TEST_F(HostileIconsTest, APipeOrADeviceIsNotWaitedFor) {
    EXPECT_TRUE(isRefused(pipe("icon.png")));
    EXPECT_TRUE(isRefused("/dev/zero"));
    EXPECT_TRUE(isRefused(folder.path()));
}

TEST_F(HostileIconsTest, AnIconInTheThemeMayBeAPipeToo) {
    std::filesystem::create_directories(folder.path() / "test/64x64");
    putFile(folder.path() / "test/index.theme",
            "[Icon Theme]\nName=Test\nDirectories=64x64\n[64x64]\nSize=64\nType=Threshold\n");
    QIcon::setThemeSearchPaths({QString::fromStdString(folder.path().string())});
    QIcon::setThemeName("test");
    pipe("test/64x64/mail.png");
    const auto icon = iconFor({.themeName = "mail", .imageFile = {}});
    EXPECT_EQ(readPixmap(icon, QSize(32, 32)).toImage(),
              genericApplicationIcon().pixmap(QSize(32, 32), 1.0).toImage());
}

TEST_F(HostileIconsTest, ANameInTheThemeLeadsNowhereElse) {
    std::filesystem::create_directories(folder.path() / "test/64x64");
    putFile(folder.path() / "test/index.theme",
            "[Icon Theme]\nName=Test\nDirectories=64x64\n[64x64]\nSize=64\nType=Threshold\n");
    QIcon::setThemeSearchPaths({QString::fromStdString(folder.path().string())});
    QIcon::setThemeName("test");
    file("outside.svg", svg(""));
    const auto icon = iconFor({.themeName = "../../outside", .imageFile = {}});
    EXPECT_NE(readPixmap(icon, QSize(32, 32)).toImage().pixelColor(16, 16), QColor(Qt::red));
}

TEST_F(HostileIconsTest, ADrawingMayNotNameOtherFiles) {
    ASSERT_TRUE(isRed(file("good.svg", svg("<!-- fine -->"))));
    const auto named = pipe("picture");
    for (const auto& reference :
         {R"(<image xlink:href=")" + named + R"(" width="9" height="9"/>)",
          R"(<image href=")" + named + R"(" width="9" height="9"/>)",
          R"(<image xlink:href="file://)" + named + R"(" width="9" height="9"/>)",
          R"(<image xlink:href="data/../../../../../../../..)" + named + R"(" width="9"/>)"}) {
        EXPECT_TRUE(isRefused(file("bad.svg", svg(reference)))) << reference;
    }
    EXPECT_TRUE(isRefused(file("style.svg", "<?xml-stylesheet type=\"text/css\" href=\"" + named +
                                                "\"?>" + svg(""))));
}

TEST_F(HostileIconsTest, ADrawingMayHoldAPicture) {
    QImage blue(8, 8, QImage::Format_ARGB32);
    blue.fill(Qt::blue);
    const auto data = QByteArray::fromStdString(pngOf(blue)).toBase64().toStdString();
    const auto image = "<image x=\"0\" y=\"0\" width=\"32\" height=\"32\" "
                       "xlink:href=\"data:image/png;base64," +
                       data + "\"/>";
    const auto path = file("with.svg", svgBegin + image + "</svg>");
    EXPECT_EQ(shown(path).pixelColor(16, 16), QColor(Qt::blue));
}

TEST_F(HostileIconsTest, ADrawingInADrawingIsRefused) {
    const auto inner = QByteArray::fromStdString(
                           svg(R"(<image xlink:href=")" + pipe("picture") + R"(" width="9"/>)"))
                           .toBase64()
                           .toStdString();
    EXPECT_TRUE(isRefused(
        file("outer.svg", svg(R"(<image width="9" height="9" xlink:href="data:image/png;base64,)" +
                              inner + R"("/>)"))));
}

TEST_F(HostileIconsTest, APackedDrawingIsNotUnpackedWithoutEnd) {
    const auto small = (folder.path() / "small.svgz").string();
    writeGzip(small, svgBegin, 0, redSquare + "</svg>");
    EXPECT_TRUE(isRed(small));
    const auto bomb = (folder.path() / "bomb.svgz").string();
    writeGzip(bomb, svgBegin, std::size_t{256} << 20, redSquare + "</svg>");
    rusage before{};
    ::getrusage(RUSAGE_SELF, &before);
    EXPECT_TRUE(isRefused(bomb));
    rusage after{};
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024); // kilobytes
}

TEST_F(HostileIconsTest, AFileThatIsTooLargeIsNotRead) {
    const auto path = file("large.svg", svg("<!-- large -->"));
    std::filesystem::resize_file(path, std::uintmax_t{1} << 40);
    EXPECT_TRUE(isRefused(path));
}

TEST_F(HostileIconsTest, APictureOfTooManyPixelsIsNotDecoded) {
    const auto redSquareOf = [](int side) {
        QImage image(side, side, QImage::Format_RGB32);
        image.fill(Qt::red);
        return pngOf(image);
    };
    EXPECT_TRUE(isRed(file("most.png", redSquareOf(2048))));
    EXPECT_TRUE(isRefused(file("more.png", redSquareOf(2049))));
    EXPECT_TRUE(isRefused(file("huge.png", pngThatPromises(30'000))));
    EXPECT_TRUE(isRefused(file("huge.xpm", "/* XPM */\nstatic char *x[] = {\n"
                                           "\"30000 30000 1 1\",\n\"a c red\",\n\"a\"};\n")));
}

TEST_F(HostileIconsTest, AHugeDrawingIsDrawnSmall) {
    EXPECT_TRUE(isRed(file("huge.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="30000" )"
                                       R"(height="30000"><rect width="30000" height="30000" )"
                                       R"(fill="red"/></svg>)")));
}

TEST_F(HostileIconsTest, ADrawingThatRepeatsItselfWithoutEndIsRefused) {
    std::string bomb = R"(<defs><g id="a0"><rect width="1" height="1"/></g>)";
    for (int level = 1; level <= 40; ++level) {
        const auto use = "<use xlink:href=\"#a" + std::to_string(level - 1) + "\"/>";
        bomb.append("<g id=\"a").append(std::to_string(level)).append("\">");
        bomb.append(use).append(use).append("</g>");
    }
    EXPECT_TRUE(isRefused(file("bomb.svg", svg(bomb + "</defs><use xlink:href=\"#a40\"/>"))));
    EXPECT_TRUE(isRefused(
        file("ring.svg", svg(R"(<g id="a"><use xlink:href="#a"/></g><use xlink:href="#a"/>)"))));
    EXPECT_TRUE(isRefused(file("deep.svg", [] {
        std::string text = svgBegin;
        for (int level = 0; level < 5000; ++level) {
            text += "<g>";
        }
        for (int level = 0; level < 5000; ++level) {
            text += "</g>";
        }
        return text + "</svg>";
    }())));
}

TEST_F(HostileIconsTest, TheMainThreadReadsNoneOfThem) {
    std::string squares;
    for (int number = 0; number < 10'000; ++number) {
        squares += redSquare;
    }
    const auto path = file("slow.svg", svg(squares));
    const auto before = secondsOfThisThread();
    EXPECT_FALSE(readIconImage(path, QSize(32, 32)).isNull());
    const auto reading = secondsOfThisThread() - before;
    const auto icon = iconFor({.themeName = {}, .imageFile = path});
    const QImage generic = genericApplicationIcon().pixmap(QSize(32, 32), 1.0).toImage();
    const auto asked = secondsOfThisThread();
    EXPECT_EQ(icon.pixmap(QSize(32, 32), 1.0).toImage(), generic) << "until it has been read";
    EXPECT_LT(secondsOfThisThread() - asked, reading / 2);
    EXPECT_TRUE(isReadingIcons());
    awaitIcons();
    EXPECT_TRUE(isRed(path));
}

} // namespace
} // namespace hollowfernpike::test
