#include "ui/FontChange.h"
#include "ui/window/CardConstraints.h"
#include "ui/window/MainWindowTest.h"

#include <QScreen>

namespace hollowfernpike::test {

namespace {

struct Appearance {
    const char* name;
    QSize size;
    Language language;
};

// NOLINTNEXTLINE(readability-identifier-naming): called so by the test library
void PrintTo(const Appearance& appearance, std::ostream* out) {
    *out << appearance.name;
}

/// The constraints of header bar, list and cards, at the first and at the least size.
class WindowGeometry : public MainWindowTest, public testing::WithParamInterface<Appearance> {
protected:
    WindowGeometry() {
        speak(GetParam().language);
        addShortcut("Editor", 0, command);
        addShortcut(std::string(300, 'W'), 65535, modifierMask);
        addShortcut("日本語入力メソッド設定ユーティリティ", 1, command);
        open().window()->resize(GetParam().size);
        settle();
    }

    void expectCardsInPlace() const {
        const int width = controller->scrollView()->viewport()->width() - 2 * 16;
        int top = 8;
        for (const ShortcutCardView* card : controller->stackView()->cards()) {
            SCOPED_TRACE(card->appNameLabel().text().toStdString());
            EXPECT_EQ(card->geometry(), QRect(16, top, width, 52));
            expectCardConstraints(*card);
            top += 52 + 8;
        }
        EXPECT_GT(top, 8);
    }
};

constexpr QSize firstSize(480, 400);
constexpr QSize leastSize(400, 300);

INSTANTIATE_TEST_SUITE_P(
    Appearances, WindowGeometry,
    testing::Values(Appearance{"firstInJapanese", firstSize, Language::japanese},
                    Appearance{"firstInEnglish", firstSize, Language::english},
                    Appearance{"leastInJapanese", leastSize, Language::japanese},
                    Appearance{"leastInEnglish", leastSize, Language::english}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_P(WindowGeometry, OfTheHeaderBar) {
    const QSize size = GetParam().size;
    const QRect header = place(*controller->addButton()->parentWidget());
    EXPECT_EQ(header, QRect(0, 0, size.width(), 52));
    EXPECT_EQ(place(*controller->exportButton()), QRect(16, 12, 28, 28));
    EXPECT_EQ(place(*controller->importButton()), QRect(16 + 28 + 4, 12, 28, 28));
    const QRect add = place(*controller->addButton());
    EXPECT_EQ(end(add), size.width() - 16);
    EXPECT_EQ(2 * add.y() + add.height(), 52);
    EXPECT_GE(add.height(), 28);
    EXPECT_GE(add.x(), end(place(*controller->importButton())) + 4);
}

TEST_P(WindowGeometry, OfTheList) {
    const QSize size = GetParam().size;
    EXPECT_EQ(place(*controller->scrollView()), QRect(0, 52, size.width(), size.height() - 52));
    const QWidget& clip = *controller->scrollView()->viewport();
    const QRect stack = placeIn(clip, *controller->stackView());
    EXPECT_EQ(stack.topLeft(), QPoint(0, 0));
    EXPECT_EQ(stack.width(), clip.width());
    EXPECT_EQ(stack.height(), 8 + 3 * 52 + 2 * 8 + 8);
}

TEST_P(WindowGeometry, OfTheCards) {
    expectCardsInPlace();
}

TEST_P(WindowGeometry, OfTheCardsBesideAScroller) {
    fill(20);
    settle();
    ASSERT_TRUE(controller->scrollView()->verticalScrollBar()->isVisible());
    EXPECT_EQ(place(*controller->addButton()->parentWidget()).size(),
              QSize(GetParam().size.width(), 52));
    expectCardsInPlace();
}

TEST_P(WindowGeometry, OfABadgeBesideALongNameAndAScroller) {
    addShortcut(std::string(300, 'W'), 49, modifierMask);
    fill(20);
    settle();
    ASSERT_TRUE(controller->scrollView()->verticalScrollBar()->isVisible());
    const ShortcutCardView& crowded = card(3);
    ASSERT_EQ(crowded.hotkeyBadge().text(), " ⌃⌥⇧⌘Space ");
    EXPECT_EQ(crowded.hotkeyBadge().size(), crowded.hotkeyBadge().sizeHint());
    EXPECT_EQ(end(crowded.hotkeyBadge().geometry()) + 12, crowded.editButton().x());
    expectCardConstraints(crowded);
}

TEST_F(MainWindowTest, IsFourHundredAndEightyByFourHundredAndNotSmallerThanFourByThreeHundred) {
    EXPECT_EQ(open().window()->size(), QSize(480, 400));
    EXPECT_EQ(controller->window()->minimumSize(), QSize(400, 300));
    controller->window()->resize(10, 10);
    EXPECT_EQ(controller->window()->size(), QSize(400, 300));
}

TEST_F(MainWindowTest, CanBeClosedMinimizedAndResized) {
    const auto flags = open().window()->windowFlags();
    EXPECT_EQ(flags & Qt::WindowType_Mask, Qt::Window);
    EXPECT_EQ(flags & Qt::CustomizeWindowHint, 0);
    EXPECT_GT(controller->window()->maximumWidth(), 100'000);
}

TEST_F(MainWindowTest, IsInTheMiddleOfTheScreenFromSideToSide) {
    controller = std::make_unique<MainWindowController>();
    const QRect screen = controller->window()->screen()->availableGeometry();
    const QRect window = controller->window()->geometry();
    EXPECT_NEAR(window.x() - screen.x(), end(screen) - end(window), 1);
    EXPECT_LE(window.y() - screen.y(), bottom(screen) - bottom(window));
    EXPECT_GT(window.y(), screen.y());
}

TEST_F(MainWindowTest, ShowsAVerticalScrollerAndNoHorizontalOneAndNoBackground) {
    open();
    EXPECT_NE(controller->scrollView()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(controller->scrollView()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_FALSE(controller->scrollView()->viewport()->autoFillBackground());
    EXPECT_FALSE(controller->stackView()->autoFillBackground());
    fill(20);
    settle();
    EXPECT_TRUE(controller->scrollView()->verticalScrollBar()->isVisible());
    EXPECT_FALSE(controller->scrollView()->horizontalScrollBar()->isVisible());
    EXPECT_EQ(controller->scrollView()->verticalScrollBar()->maximum(),
              controller->stackView()->height() - controller->scrollView()->viewport()->height());
}

TEST_F(MainWindowTest, AFontThatChangesIsTakenOverAtOnce) {
    fill(2);
    const auto sizes = [this] {
        const auto* button = controller->addButton();
        EXPECT_TRUE(eventually([&] { return button->size() == button->sizeHint(); }));
        return std::vector{controller->window()->minimumSize(),
                           QSize(0, button->parentWidget()->height()),
                           button->size(),
                           QSize(0, card(1).height()),
                           card(1).hotkeyBadge().size(),
                           card(1).appNameLabel().size()};
    };
    for (const int points : {24, 8}) {
        open();
        const FontChange change(points);
        const auto followed = sizes();
        controller->window()->close();
        open();
        EXPECT_EQ(followed, sizes()) << points;
    }
}

} // namespace

} // namespace hollowfernpike::test
