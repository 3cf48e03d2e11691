#include "desktop/beginner/FontSettings.h"
#include "desktop/editor/EditorStory.h"
#include "show/Camera.h"
#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <QColor>
#include <QImage>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace hollowfernpike {
namespace {

using namespace test;

/// What only those notice who look closely.
class DetailsTest : public testing::Test {
protected:
    EditorStory story;

    QImage lookAt(const Place& place) {
        return show::glance(story.desktop.display())
            .copy(place.x, place.y, place.width, place.height);
    }

    /// An application whose icon, all magenta, is so wide and, unless wider, 24 high.
    void installWithIcon(const std::string& file, int width) {
        QImage icon(width, std::max(width, 24), QImage::Format_RGB32);
        icon.fill(Qt::magenta);
        const auto image = (story.desktop.home() / (file + ".png")).string();
        ASSERT_TRUE(icon.save(QString::fromStdString(image)));
        writeFile(story.desktop.applications() / (file + ".desktop"),
                  "[Desktop Entry]\nType=Application\nName=Maps\nExec=true\nIcon=" + image + '\n');
    }
};

bool hasColor(const QImage& image, const QColor& color) {
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, image.height() / 2) == color) {
            return true;
        }
    }
    return false;
}

/// Whether the row of pixels has one colour from end to end.
bool isPlain(const QImage& image, int row) {
    const auto* pixels = reinterpret_cast<const QRgb*>(image.constScanLine(row));
    return std::all_of(pixels, pixels + image.width(),
                       [&](QRgb pixel) { return pixel == pixels[0]; });
}

TEST_F(DetailsTest, NamesInThePanelBeginInOneLineWhateverTheShapeOfTheIcons) {
    installWithIcon("square", 24);
    installWithIcon("narrow", 6);
    story.start();
    story.openManagement();
    story.openApplications(story.clickAdd());
    auto rows = story.reader.partsOf(story.reader.find("dialog", story.titles.applications));
    std::erase_if(rows, [](const Accessible& part) { return part.name != "Maps"; });
    ASSERT_EQ(rows.size(), 2);
    const auto pictures = [&] {
        return std::vector{lookAt(story.reader.placeOf(rows[0])),
                           lookAt(story.reader.placeOf(rows[1]))};
    };
    ASSERT_TRUE(waitUntil([&] {
        return std::ranges::all_of(pictures(),
                                   [](const QImage& row) { return hasColor(row, Qt::magenta); });
    })) << "icons are read meanwhile";
    constexpr int roomForIcons = 34;
    const auto nameIn = [](const QImage& row) {
        return row.copy(roomForIcons, 0, 100, row.height());
    };
    const auto shown = pictures();
    EXPECT_FALSE(isPlain(nameIn(shown[0]), shown[0].height() / 2)) << "there is a name";
    EXPECT_EQ(nameIn(shown[0]), nameIn(shown[1]));
}

TEST_F(DetailsTest, IconsInThePanelGrowWithTheFont) {
    installWithIcon("square", 48);
    setFont(story.desktop, 24);
    story.start(withFontSettings);
    story.openManagement();
    story.reader.press(story.reader.find("push button", "+ ショートカット追加"));
    story.comes(story.titles.adding);
    story.reader.press(story.part(story.titles.adding, "push button", "アプリを選択..."));
    const auto row =
        story.reader.placeOf(story.part(story.titles.applications, "list item", "Maps"));
    constexpr int grown = 2 * 24;
    EXPECT_TRUE(waitUntil([&] {
        const auto look = lookAt(row);
        int width = 0;
        for (int x = 0; x < look.width(); ++x) {
            width += look.pixelColor(x, look.height() / 2) == Qt::magenta ? 1 : 0;
        }
        return width == grown;
    }));
}

TEST_F(DetailsTest, SaveAndCancelAreEquallyHighWhateverTheirTextsNeed) {
    const auto style = story.desktop.home() / "style.qss";
    writeFile(style, "QPushButton:default { padding: 9px }\n");
    setFont(story.desktop, 10);
    std::ofstream(story.desktop.home() / ".config/qt6ct/qt6ct.conf", std::ios::app)
        << "\n[Interface]\nstylesheets=" << style.string() << '\n';
    story.start(withFontSettings);
    story.openManagement();
    story.clickAdd();
    const auto placeOf = [this](std::string_view name) {
        return story.reader.placeOf(story.part(story.titles.adding, "push button", name));
    };
    const auto save = placeOf("保存");
    const auto cancel = placeOf("キャンセル");
    EXPECT_GT(save.height, placeOf("アプリを選択...").height) << "the style is in force";
    EXPECT_EQ(cancel.height, save.height);
    EXPECT_EQ(cancel.y, save.y);
}

TEST_F(DetailsTest, AMessageOfTwoLinesKeepsClearOfTheRecordersRing) {
    story.launchUtility({{"XAUTHORITY", story.authority("authority", "untrusted").string()}});
    ASSERT_TRUE(waitUntil([&] { return !story.utility().errors().empty(); }));
    story.openManagement();
    const auto editor = story.clickAdd();
    story.choose(editor, story.front.name());
    story.clickOn(story.part(story.titles.adding, "push button", "記録"));
    ASSERT_TRUE(story.recorderShows(story.titles.adding, text::grantPermission));
    const auto recorder =
        story.reader.placeOf(story.part(story.titles.adding, "panel", "ショートカットキー"));
    const auto button =
        story.reader.placeOf(story.part(story.titles.adding, "push button", "記録"));
    constexpr int left = 12;
    constexpr int ring = 3;
    const Place text{.x = recorder.x + left,
                     .y = recorder.y,
                     .width = button.x - 8 - left - recorder.x,
                     .height = recorder.height};
    const auto isClear = [&] {
        const auto look = lookAt(text);
        const auto colorOf = [&](int row) { return look.pixel(0, row); };
        const int last = look.height() - 1;
        return isPlain(look, ring) && colorOf(ring) != colorOf(ring + 1) &&
               isPlain(look, ring + 1) && isPlain(look, last - ring - 1) &&
               !isPlain(look, look.height() / 3);
    };
    EXPECT_TRUE(waitUntil(isClear));
}

} // namespace
} // namespace hollowfernpike
