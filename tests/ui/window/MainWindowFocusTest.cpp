#include "ui/window/MainWindowTest.h"

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

TEST_F(MainWindowTest, TabGoesThroughTheHeaderAndThenThroughTheCards) {
    fill(2);
    open();
    controller->exportButton()->setFocus();
    std::vector<QWidget*> visited;
    for (int step = 0; step < 7; ++step) {
        visited.push_back(QApplication::focusWidget());
        tab();
    }
    EXPECT_THAT(visited,
                ElementsAre(controller->exportButton(), controller->importButton(),
                            controller->addButton(), &card(0).editButton(), &card(0).deleteButton(),
                            &card(1).editButton(), &card(1).deleteButton()));
    EXPECT_EQ(QApplication::focusWidget(), controller->exportButton());
}

TEST_F(MainWindowTest, BeginsAtTheButtonThatAdds) {
    open();
    EXPECT_EQ(QApplication::focusWidget(), controller->addButton());
}

TEST_F(MainWindowTest, TheListScrollsToWhereTheFocusGoes) {
    fill(50);
    open();
    for (int step = 0; step < 2 * 30; ++step) {
        tab();
    }
    ASSERT_EQ(QApplication::focusWidget(), &card(29).deleteButton());
    const QRect visible = placeIn(*controller->scrollView()->viewport(), card(29));
    EXPECT_GE(visible.y(), 8);
    EXPECT_LE(bottom(visible), controller->scrollView()->viewport()->height() - 8);
}

TEST_F(MainWindowTest, TheListScrollsWhenTheFocusComesBackFromTheHeader) {
    fill(50);
    open();
    controller->exportButton()->setFocus();
    tab(Qt::Key_Backtab);
    ASSERT_EQ(QApplication::focusWidget(), &card(49).deleteButton());
    EXPECT_EQ(scrolled(), controller->scrollView()->verticalScrollBar()->maximum());
    controller->addButton()->setFocus();
    tab();
    ASSERT_EQ(QApplication::focusWidget(), &card(0).editButton());
    EXPECT_EQ(scrolled(), 0);
}

TEST_F(MainWindowTest, AReloadLeavesTheFocusAtItsPlace) {
    fill(3);
    open();
    card(1).deleteButton().setFocus();
    ShortcutStore::shared().remove(ShortcutStore::shared().shortcuts()[1].id);
    EXPECT_EQ(QApplication::focusWidget(), &card(1).deleteButton());
    ShortcutStore::shared().remove(ShortcutStore::shared().shortcuts()[1].id);
    EXPECT_EQ(QApplication::focusWidget(), &card(0).deleteButton());
    ShortcutStore::shared().remove(ShortcutStore::shared().shortcuts()[0].id);
    EXPECT_EQ(QApplication::focusWidget(), controller->addButton());
}

TEST_F(MainWindowTest, AReloadLeavesTheFocusInTheHeader) {
    fill(2);
    open();
    controller->importButton()->setFocus();
    fill(4);
    EXPECT_EQ(QApplication::focusWidget(), controller->importButton());
}

TEST_F(MainWindowTest, EscapeDoesNoHarm) {
    fill(1);
    open();
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &escape);
    settle();
    EXPECT_TRUE(controller->window()->isVisible());
    EXPECT_THAT(shownNames(), SizeIs(1));
}

} // namespace

} // namespace hollowfernpike::test
