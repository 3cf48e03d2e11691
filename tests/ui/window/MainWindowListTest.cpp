#include "hotkeys/HotkeyManager.h"

#include "platform/ApplicationBundles.h"
#include "ui/icons/IconView.h"
#include "ui/window/MainWindowTest.h"

#include <algorithm>
#include <map>
#include <typeindex>
#include <typeinfo>
#include <utility>

namespace hollowfernpike::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(MainWindowTest, TheFirstShortcutReplacesTheHintByACard) {
    open();
    ASSERT_NE(hint(), nullptr);
    addShortcut("Editor", 0, command);
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
        addShortcut(name, static_cast<std::uint16_t>(name[0]), command);
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

TEST_F(MainWindowTest, ACombinationThatTheDesktopKeepsIsToldOnItsCard) {
    desktop.eventTaps.refused = {{1, command}};
    fill(3);
    HotkeyManager::shared().start();
    for (const auto language : {Language::japanese, Language::english}) {
        speak(language);
        open();
        const auto notice = card(1).accessibleDescription();
        EXPECT_TRUE(notice.contains(language == Language::english ? "The desktop does not"
                                                                  : "デスクトップ"));
        EXPECT_TRUE(card(1).hotkeyBadge().toolTip().endsWith("<br>" + notice));
        for (const std::size_t other : {0U, 2U}) {
            EXPECT_EQ(card(other).accessibleDescription(), "");
            EXPECT_FALSE(card(other).hotkeyBadge().toolTip().contains("<br>"));
        }
    }
}

TEST_F(MainWindowTest, ACombinationThatAnotherProgramHoldsHasASignOnItsCard) {
    desktop.eventTaps.shared = {{1, command}};
    fill(3);
    HotkeyManager::shared().start();
    for (const auto language : {Language::japanese, Language::english}) {
        speak(language);
        open();
        const auto* sign = card(1).noticeSign();
        ASSERT_NE(sign, nullptr);
        EXPECT_TRUE(sign->isVisible());
        EXPECT_EQ(sign->toolTip(), language == Language::english
                                       ? "Another program holds this combination"
                                       : "この組み合わせはほかのプログラムが使っています");
        EXPECT_EQ(sign->accessibleName(), sign->toolTip());
        EXPECT_EQ(sign->geometry().left(), card(1).hotkeyBadge().geometry().right() + 7);
        EXPECT_EQ(card(0).noticeSign(), nullptr);
    }
}

TEST_F(MainWindowTest, ASignGoesWithTheProgramThatHeldTheCombination) {
    desktop.eventTaps.shared = {{1, command}};
    fill(3);
    HotkeyManager::shared().start();
    open();
    desktop.eventTaps.shared.clear();
    desktop.notificationCenter.post(refusedCombinationsDidChange);
    EXPECT_EQ(card(1).noticeSign(), nullptr);
}

TEST_F(MainWindowTest, AChangeAsksOnceForEachNameAndTellsTheKeysOnce) {
    fill(3);
    HotkeyManager::shared().start();
    open();
    desktop.applicationBundles.namesAsked.clear();
    const auto told = [this] {
        return std::ranges::count_if(desktop.log.calls(), [](const std::string& call) {
            return call.starts_with("eventTap.setInterest");
        });
    };
    const auto before = told();
    ShortcutStore::shared().importData(ShortcutStore::shared().exportData().value());
    HotkeyManager::shared().buildShortcutMap(); // as the delegate does
    EXPECT_EQ(desktop.applicationBundles.namesAsked.size(), 3);
    EXPECT_EQ(told(), before + 1);
}

TEST_F(MainWindowTest, WhoHoldsTheCombinationsMakesNoNewCards) {
    desktop.eventTaps.shared = {{1, command}};
    fill(3);
    HotkeyManager::shared().start();
    open();
    const auto& held = card(1);
    const auto words = held.hotkeyBadge().toolTip();
    desktop.eventTaps.shared = {{0, command}};
    desktop.notificationCenter.post(refusedCombinationsDidChange);
    EXPECT_EQ(&card(1), &held);
    EXPECT_EQ(held.noticeSign(), nullptr);
    EXPECT_NE(held.hotkeyBadge().toolTip(), words);
    EXPECT_NE(card(0).noticeSign(), nullptr);
}

/// How often the widgets of each class got each kind of event.
class EventCounter final : public QObject {
public:
    EventCounter() { qApp->installEventFilter(this); }

    int count(const std::type_info& widget, QEvent::Type type) const {
        const auto found = counts_.find({widget, type});
        return found == counts_.end() ? 0 : found->second;
    }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        ++counts_[{typeid(*watched), event->type()}];
        return false;
    }

    std::map<std::pair<std::type_index, QEvent::Type>, int> counts_;
};

TEST_F(MainWindowTest, AChangeDoesNothingTwiceForACard) {
    constexpr int count = 50;
    fill(count);
    open();
    const EventCounter events;
    ShortcutStore::shared().importData(ShortcutStore::shared().exportData().value());
    settle();
    for (const auto type : {QEvent::Show, QEvent::Resize, QEvent::Move, QEvent::Polish}) {
        EXPECT_EQ(events.count(typeid(ShortcutCardView), type), count) << int(type);
        EXPECT_EQ(events.count(typeid(HotkeyBadge), type), count) << int(type);
        EXPECT_EQ(events.count(typeid(FittingLabel), type), count) << int(type);
    }
    EXPECT_EQ(events.count(typeid(HotkeyBadge), QEvent::ToolTipChange), count);
    EXPECT_LE(events.count(typeid(FittingLabel), QEvent::ToolTipChange), count);
    EXPECT_LE(events.count(typeid(CardStackView), QEvent::LayoutRequest), 1);
    EXPECT_LE(events.count(typeid(ShortcutCardView), QEvent::Paint), 10) << "those in sight, once";
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

TEST_F(MainWindowTest, IconsOfCardsOutOfSightAreNotLookedFor) {
    fill(100);
    open();
    EXPECT_THAT(desktop.applicationBundles.iconsAsked,
                testing::Contains("/applications/Application 0.desktop"));
    EXPECT_LT(desktop.applicationBundles.iconsAsked.size(), 10);
}

TEST_F(MainWindowTest, TabGoesThroughTheHeaderAndThenThroughTheCards) {
    fill(2);
    open();
    controller->exportButton()->setFocus();
    std::vector<QWidget*> visited;
    for (int step = 0; step < 9; ++step) {
        visited.push_back(QApplication::focusWidget());
        tab();
    }
    EXPECT_THAT(visited, ElementsAre(controller->exportButton(), controller->importButton(),
                                     controller->addButton(), &card(0), &card(0).editButton(),
                                     &card(0).deleteButton(), &card(1), &card(1).editButton(),
                                     &card(1).deleteButton()));
    EXPECT_EQ(QApplication::focusWidget(), controller->exportButton());
}

TEST_F(MainWindowTest, BeginsAtTheButtonThatAdds) {
    open();
    EXPECT_EQ(QApplication::focusWidget(), controller->addButton());
}

TEST_F(MainWindowTest, TheListScrollsToWhereTheFocusGoes) {
    fill(50);
    open();
    for (int step = 0; step < 3 * 30; ++step) {
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
    ASSERT_EQ(QApplication::focusWidget(), &card(0));
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

TEST_F(MainWindowTest, ACardShowsWhatBecomesOfItsApplication) {
    addShortcut("mail", 0, command);
    const std::string path = ShortcutStore::shared().shortcuts().front().appPath;
    open();
    const auto& shown = card(0);
    desktop.applicationBundles.displayNames[{path, "ja"}] = "メール";
    desktop.applicationBundles.standings[path] = platform::Standing::gone;
    desktop.applicationBundles.change();
    EXPECT_EQ(shown.appNameLabel().toolTip(), "メール");
    EXPECT_TRUE(eventually([&] { return shown.iconView().isDimmed(); }));
    desktop.applicationBundles.standings.clear();
    desktop.applicationBundles.change();
    EXPECT_TRUE(eventually([&] { return !shown.iconView().isDimmed(); }));
    EXPECT_EQ(&card(0), &shown) << "the same card";
}

} // namespace

} // namespace hollowfernpike::test
