#include "ui/Colors.h"
#include "ui/Corners.h"
#include "ui/parts/SystemColors.h"
#include "ui/window/MainWindowTest.h"

#include <QAccessible>

#include <algorithm>

namespace hollowfernpike::test {

namespace {

using testing::IsEmpty;
using testing::SizeIs;

using WindowTexts = WindowInEachLanguage;

INSTANTIATE_TEST_SUITE_P(Languages, WindowTexts,
                         testing::Values(Language::japanese, Language::english), languageName);

TEST_P(WindowTexts, AreInTheLanguageOfTheInterface) {
    open();
    EXPECT_EQ(
        controller->window()->windowTitle().toStdString(),
        inLanguage("Hollowfernpike - ショートカット管理", "Hollowfernpike - Manage Shortcuts"));
    EXPECT_EQ(controller->addButton()->text().toStdString(),
              inLanguage("+ ショートカット追加", "+ Add Shortcut"));
    for (const auto& [button, text] :
         {std::pair(controller->exportButton(), inLanguage("エクスポート", "Export")),
          std::pair(controller->importButton(), inLanguage("インポート", "Import"))}) {
        EXPECT_EQ(button->toolTip().toStdString(), text);
        const auto* said = QAccessible::queryAccessibleInterface(button);
        EXPECT_EQ(said->text(QAccessible::Name).toStdString(), text);
        EXPECT_EQ(said->role(), QAccessible::PushButton);
    }
}

TEST_P(WindowTexts, AnEmptyListShowsOnlyTheHint) {
    open();
    EXPECT_THAT(controller->stackView()->cards(), IsEmpty());
    const auto labels = controller->stackView()->findChildren<QLabel*>();
    ASSERT_THAT(labels, SizeIs(1));
    EXPECT_EQ(labels.front()->text().toStdString(),
              inLanguage("ショートカットが登録されていません\n"
                         "「+ ショートカット追加」で追加してください",
                         "No shortcuts registered.\nClick \"+ Add Shortcut\" to add one."));
    EXPECT_EQ(labels.front()->alignment(), Qt::AlignCenter);
    EXPECT_EQ(labels.front()->font().pixelSize(), 14);
    EXPECT_EQ(labels.front()->font().weight(), QFont::Normal);
}

TEST_F(MainWindowTest, BothLinesOfTheHintAreCentred) {
    speak(Language::english); // a Japanese bracket has a wide margin of its own
    open();
    const QImage image = enlarged(*controller->stackView()->findChildren<QLabel*>().front());
    const QColor background = image.pixelColor(0, 0);
    const int middle = image.height() / 2;
    for (const auto& [top, bottom] : {std::pair{0, middle}, std::pair{middle, image.height()}}) {
        int left = image.width();
        int right = 0;
        for (int y = top; y < bottom; ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != background) {
                    left = std::min(left, x);
                    right = std::max(right, x + 1);
                }
            }
        }
        ASSERT_GT(right, 0);
        EXPECT_NEAR(left, image.width() - right, 5 * image.devicePixelRatio());
    }
}

TEST_F(MainWindowTest, SymbolsLeadOutOfABoxAndIntoIt) {
    const ApplicationPalette colors(lightPalette());
    open();
    EXPECT_TRUE(shows(*controller->exportButton(), Symbol::squareAndArrowUp, SymbolTint::text));
    EXPECT_TRUE(shows(*controller->importButton(), Symbol::squareAndArrowDown, SymbolTint::text));
}

TEST_F(MainWindowTest, TheHintIsInTheSecondaryColour) {
    const ApplicationPalette colors(lightPalette());
    open();
    const QColor background = lightPalette().color(QPalette::Window);
    const QColor color = laidOver(secondaryLabelColor(lightPalette()), background);
    const QImage image = hint()->grab().toImage();
    int darkest = background.lightness();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            darkest = std::min(darkest, image.pixelColor(x, y).lightness());
        }
    }
    EXPECT_NEAR(darkest, color.lightness(), 4);
}

TEST_P(WindowTexts, TheHintIsAsLargeAsItsTextAndInTheMiddle) {
    open();
    for (const QSize size : {QSize(480, 400), QSize(400, 300)}) {
        controller->window()->resize(size);
        settle();
        const auto* hint = controller->stackView()->findChild<QLabel*>();
        const QRect place = placeIn(*controller->window(), *hint);
        EXPECT_EQ(place.size(), hint->sizeHint());
        EXPECT_EQ(place.y(), 52 + 8);
        EXPECT_NEAR(place.x(), size.width() - end(place), 1);
        EXPECT_GE(place.x(), 16);
    }
}

} // namespace

} // namespace hollowfernpike::test
