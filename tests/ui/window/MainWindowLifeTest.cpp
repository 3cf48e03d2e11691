#include "ui/window/MainWindowTest.h"

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

TEST_F(MainWindowTest, ALanguageChangeRelabelsTheWindowAndRebuildsTheCards) {
    fill(1);
    open();
    Language::setCurrent(Language::english);
    EXPECT_EQ(controller->window()->windowTitle(), "Hollowfernpike - Manage Shortcuts");
    EXPECT_EQ(controller->addButton()->text(), "+ Add Shortcut");
    EXPECT_EQ(controller->exportButton()->toolTip(), "Export");
    EXPECT_EQ(controller->importButton()->toolTip(), "Import");
    EXPECT_EQ(card(0).editButton().accessibleName(), "Edit");
}

TEST_F(MainWindowTest, ALanguageChangeReachesTheHint) {
    open();
    Language::setCurrent(Language::english);
    settle();
    EXPECT_EQ(hint()->text(), "No shortcuts registered.\nClick \"+ Add Shortcut\" to add one.");
}

TEST_F(MainWindowTest, SymbolsKeepTheDescriptionsOfTheLanguageInWhichTheyWereMade) {
    open();
    Language::setCurrent(Language::english);
    EXPECT_EQ(controller->exportButton()->accessibleName(), "エクスポート");
    EXPECT_EQ(controller->importButton()->accessibleName(), "インポート");
}

TEST_F(MainWindowTest, AWindowThatIsHiddenFollowsLanguageAndList) {
    open().window()->close();
    Language::setCurrent(Language::english);
    addShortcut("Editor", 0, command);
    controller->showWindow();
    settle();
    EXPECT_EQ(controller->window()->windowTitle(), "Hollowfernpike - Manage Shortcuts");
    EXPECT_EQ(controller->addButton()->text(), "+ Add Shortcut");
    EXPECT_EQ(controller->exportButton()->toolTip(), "Export");
    EXPECT_THAT(shownNames(), ElementsAre("Editor"));
    EXPECT_EQ(card(0).deleteButton().accessibleName(), "Delete");
    EXPECT_EQ(card(0).geometry(), QRect(16, 8, 448, 52));
}

TEST_F(MainWindowTest, ClosingHidesTheWindowAndShowingBringsTheSameBack) {
    QWidget* window = open().window();
    window->resize(600, 500);
    window->close();
    settle();
    ASSERT_EQ(controller->window(), window);
    EXPECT_FALSE(window->isVisible());
    controller->showWindow();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->size(), QSize(600, 500));
}

TEST_F(MainWindowTest, ShowingBringsAMinimizedWindowBack) {
    open().window()->showMinimized();
    controller->showWindow();
    EXPECT_FALSE(controller->window()->isMinimized());
    EXPECT_TRUE(controller->window()->isVisible());
}

TEST_F(MainWindowTest, AControllerThatIsGoneObservesNothing) {
    open();
    controller.reset();
    Language::setCurrent(Language::english);
    addShortcut("Editor", 0, command);
    EXPECT_THAT(ShortcutStore::shared().shortcuts(), SizeIs(1));
}

TEST_F(MainWindowTest, AControllerWithoutItsWindowGoesOnWithoutIt) {
    fill(1);
    delete open().window();
    EXPECT_EQ(controller->stackView(), nullptr);
    EXPECT_EQ(controller->addButton(), nullptr);
    Language::setCurrent(Language::english);
    controller->reloadCards();
    controller->showWindow();
    EXPECT_EQ(controller->window(), nullptr);
}

} // namespace

} // namespace hollowfernpike::test
