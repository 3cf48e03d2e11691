#include "ui/icons/SymbolButton.h"

#include "ui/Colors.h"
#include "ui/window/WindowTest.h"

#include <QEnterEvent>
#include <QKeyEvent>

namespace hollowfernpike::test {

namespace {

class SymbolButtonTest : public WindowTest {
protected:
    SymbolButtonTest() {
        button.move(100, 100); // away from the pointer
        window.resize(200, 200);
        window.show();
        window.activateWindow();
        other.setFocus();
        settle();
    }

    QImage picture() { return button.grab().toImage(); }

    /// The colour beside the symbol, where only states show.
    QColor background() { return picture().pixelColor(14, 3); }

    ApplicationPalette palette{lightPalette()};
    QWidget window;
    QPushButton other{&window};
    SymbolButton button{Symbol::pencil, SymbolTint::text, "Edit", &window};
};

TEST_F(SymbolButtonTest, IsTwentyEightSquareWithASymbolOfTwentyInTheMiddle) {
    EXPECT_EQ(button.size(), QSize(28, 28));
    EXPECT_EQ(button.iconSize(), QSize(20, 20));
}

TEST_F(SymbolButtonTest, ShowsNothingButItsSymbolAtRest) {
    EXPECT_EQ(background(), window.palette().color(QPalette::Window));
}

TEST_F(SymbolButtonTest, ShadesUnderThePointerAndMoreWhenPressed) {
    const QColor atRest = background();
    button.setAttribute(Qt::WA_UnderMouse);
    const QColor hovered = background();
    EXPECT_LT(hovered.lightness(), atRest.lightness());
    button.setDown(true);
    EXPECT_LT(background().lightness(), hovered.lightness());
}

TEST_F(SymbolButtonTest, DoesNotShadeWhileDisabled) {
    const QColor atRest = background();
    button.setEnabled(false);
    button.setAttribute(Qt::WA_UnderMouse);
    EXPECT_EQ(background(), atRest);
}

TEST_F(SymbolButtonTest, ShowsARingInTheAccentWhileItHasTheFocus) {
    const QColor accent = lightPalette().color(QPalette::Highlight);
    EXPECT_NE(picture().pixelColor(14, 1), accent);
    button.setFocus();
    ASSERT_TRUE(button.hasFocus());
    EXPECT_EQ(picture().pixelColor(14, 1), accent);
    EXPECT_EQ(picture().pixelColor(0, 14), accent);
}

TEST_F(SymbolButtonTest, IsPressedWithTheSpaceBar) {
    int clicks = 0;
    QObject::connect(&button, &QAbstractButton::clicked, [&] { ++clicks; });
    button.setFocus();
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent space(type, Qt::Key_Space, Qt::NoModifier, " ");
        QCoreApplication::sendEvent(&button, &space);
    }
    EXPECT_EQ(clicks, 1);
}

TEST_F(SymbolButtonTest, AClickLeavesTheFocusWhereItIs) {
    EXPECT_EQ(button.focusPolicy(), Qt::TabFocus);
}

} // namespace

} // namespace hollowfernpike::test
