#include "ui/HintLabel.h"
#include "ui/SystemColors.h"
#include "ui/WindowTest.h"

#include <QAccessible>
#include <QScreen>
#include <QScrollBar>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MainWindowTest : public WindowTest {
protected:
    QRect place(const QWidget& view) const { return placeIn(*controller->window(), view); }

    HintLabel* hint() const {
        for (auto* label : controller->stackView()->findChildren<QLabel*>()) {
            if (auto* found = dynamic_cast<HintLabel*>(label)) {
                return found;
            }
        }
        return nullptr;
    }

    /// Moves the focus as the Tab key does, or backwards.
    void tab(Qt::Key key = Qt::Key_Tab) const {
        const auto modifiers = key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier;
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
    }

    void fill(int count) {
        for (int number = 0; number < count; ++number) {
            addShortcut("Application " + std::to_string(number), static_cast<std::uint16_t>(number),
                        commandKey);
        }
    }

    int scrolled() const { return controller->scrollView()->verticalScrollBar()->value(); }
};

int end(const QRect& rect) {
    return rect.x() + rect.width();
}

int bottom(const QRect& rect) {
    return rect.y() + rect.height();
}

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
        addShortcut("Editor", 0, commandKey);
        addShortcut(std::string(300, 'W'), 65535, modifierMask);
        addShortcut("日本語入力メソッド設定ユーティリティ", 1, commandKey);
        open().window()->resize(GetParam().size);
        settle();
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
    const int width = controller->stackView()->width() - 2 * 16;
    int top = 8;
    for (const ShortcutCardView* card : controller->stackView()->cards()) {
        EXPECT_EQ(card->geometry(), QRect(16, top, width, 52));
        top += 52 + 8;
    }
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

TEST_F(MainWindowTest, TheFirstShortcutReplacesTheHintByACard) {
    open();
    ASSERT_NE(hint(), nullptr);
    addShortcut("Editor", 0, commandKey);
    settle();
    EXPECT_EQ(hint(), nullptr);
    EXPECT_THAT(shownNames(), ElementsAre("Editor"));
    ShortcutStore::shared().remove(ShortcutStore::shared().shortcuts().front().id);
    settle();
    EXPECT_NE(hint(), nullptr);
    EXPECT_THAT(shownNames(), IsEmpty());
}

TEST_F(MainWindowTest, CardsComeInTheStoresOrder) {
    for (const auto* name : {"Zebra", "apple", "Mango"}) {
        addShortcut(name, static_cast<std::uint16_t>(name[0]), commandKey);
    }
    open();
    EXPECT_THAT(shownNames(), ElementsAre("Zebra", "apple", "Mango"));
}

TEST_F(MainWindowTest, AChangedShortcutKeepsItsPlace) {
    fill(3);
    open();
    auto changed = ShortcutStore::shared().shortcuts()[1];
    changed.appName = "Changed";
    ShortcutStore::shared().update(changed);
    EXPECT_THAT(shownNames(), ElementsAre("Application 0", "Changed", "Application 2"));
}

TEST_F(MainWindowTest, EveryReloadMakesNewCards) {
    fill(1);
    open();
    const QPointer<ShortcutCardView> before = &card(0);
    controller->reloadCards();
    EXPECT_NE(&card(0), before);
    settle();
    EXPECT_EQ(before, nullptr);
}

TEST_F(MainWindowTest, AChangeIsLaidOutAtOnce) {
    open();
    fill(3);
    EXPECT_EQ(controller->stackView()->height(), 8 + 3 * 52 + 2 * 8 + 8);
    EXPECT_EQ(card(2).geometry(), QRect(16, 8 + 2 * 60, 448, 52));
}

TEST_F(MainWindowTest, AReloadKeepsWhereTheListIsScrolledTo) {
    fill(50);
    open();
    controller->scrollView()->verticalScrollBar()->setValue(700);
    auto changed = ShortcutStore::shared().shortcuts()[20];
    changed.appName = "Changed";
    ShortcutStore::shared().update(changed);
    settle();
    EXPECT_EQ(scrolled(), 700);
}

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
    addShortcut("Editor", 0, commandKey);
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
    addShortcut("Editor", 0, commandKey);
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

TEST_F(MainWindowTest, IconsOfCardsOutOfSightAreNotLookedFor) {
    fill(100);
    open();
    EXPECT_THAT(desktop.applicationBundles.iconsAsked,
                testing::Contains("/applications/Application 0.desktop"));
    EXPECT_LT(desktop.applicationBundles.iconsAsked.size(), 10);
}

} // namespace

} // namespace hollowfernpike::test
