#include "ui/parts/Labels.h"

#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>

#include <gmock/gmock.h>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

class FittingLabelTest : public testing::Test {
protected:
    FittingLabelTest() { label_.setFont(systemFont(14, QFont::Medium)); }

    /// Gives the label room for this much of its text, in one line.
    void giveRoom(double share) {
        label_.resize(static_cast<int>(label_.sizeHint().width() * share), 32);
    }

    void hover() {
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), QPoint(1, 1));
        QCoreApplication::sendEvent(&label_, &event);
    }

    FittingLabel label_;
};

TEST_F(FittingLabelTest, ShowsTheWholeTextWhereThereIsRoom) {
    label_.setText("Calculator");
    giveRoom(1);
    EXPECT_THAT(label_.shownLines(), ElementsAre("Calculator"));
}

TEST_F(FittingLabelTest, EndsInAnEllipsisWhereThereIsNot) {
    label_.setText("Calculator");
    giveRoom(0.6);
    ASSERT_THAT(label_.shownLines(), SizeIs(1));
    EXPECT_TRUE(label_.shownLines().front().startsWith("Cal"));
    EXPECT_TRUE(label_.shownLines().front().endsWith(QChar(0x2026)));
    EXPECT_EQ(label_.text(), "Calculator");
}

TEST_F(FittingLabelTest, WrapsIntoTheLinesThatItMayHave) {
    label_.setText("Grant the permission, then press the button again.");
    label_.setMaximumLineCount(2);
    giveRoom(0.7);
    ASSERT_THAT(label_.shownLines(), SizeIs(2));
    EXPECT_EQ(label_.shownLines().join(QString()), label_.text());
}

TEST_F(FittingLabelTest, TheLastLineEndsInAnEllipsisWhereEvenThoseAreTooFew) {
    label_.setText("Grant the permission, then press the button again.");
    label_.setMaximumLineCount(2);
    giveRoom(0.2);
    ASSERT_THAT(label_.shownLines(), SizeIs(2));
    EXPECT_TRUE(label_.shownLines().back().endsWith(QChar(0x2026)));
}

TEST_F(FittingLabelTest, WrapsAWordThatIsTooLong) {
    label_.setText(QString(40, 'x'));
    label_.setMaximumLineCount(2);
    giveRoom(0.7);
    EXPECT_EQ(label_.shownLines().join(QString()), label_.text());
}

TEST_F(FittingLabelTest, ShowsMarkupAsItIs) {
    label_.setText("<b>bold</b>");
    giveRoom(1);
    EXPECT_THAT(label_.shownLines(), ElementsAre("<b>bold</b>"));
    EXPECT_EQ(label_.textFormat(), Qt::PlainText);
}

TEST_F(FittingLabelTest, NoRoomAtAllIsNoHarm) {
    label_.setText("Calculator");
    label_.resize(0, 0);
    EXPECT_THAT(label_.shownLines(), SizeIs(1));
    label_.grab();
    label_.setText(QString());
    EXPECT_THAT(label_.shownLines(), ElementsAre(""));
}

TEST_F(FittingLabelTest, TheToolTipTellsWhatDoesNotFit) {
    label_.setText("<b>Calculator</b> & more");
    giveRoom(0.5);
    label_.show();
    hover();
    EXPECT_EQ(QToolTip::text(), "<p>&lt;b&gt;Calculator&lt;/b&gt; &amp; more</p>");
}

TEST_F(FittingLabelTest, ThereIsNoToolTipForWhatFits) {
    label_.setText("Calculator");
    giveRoom(1);
    label_.show();
    hover();
    EXPECT_EQ(QToolTip::text(), "");
}

TEST_F(FittingLabelTest, PaintsInsideOfItsBounds) {
    label_.setText(QString(200, 'W'));
    label_.setMaximumLineCount(2);
    label_.resize(100, 32);
    QImage image(100, 32, QImage::Format_RGB32);
    image.fill(Qt::white);
    label_.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            inked += image.pixelColor(x, y) == QColor(Qt::white) ? 0 : 1;
        }
    }
    EXPECT_GT(inked, 0);
    for (int x = 0; x < image.width(); ++x) {
        EXPECT_EQ(image.pixelColor(x, 0), QColor(Qt::white));
        EXPECT_EQ(image.pixelColor(x, 31), QColor(Qt::white));
    }
}

} // namespace
} // namespace hollowfernpike
