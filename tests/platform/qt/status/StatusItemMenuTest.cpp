#include "platform/qt/status/StatusItemClient.h"
#include "platform/qt/status/StatusItemTest.h"
#include "support/KeyInjector.h"

#include <QAction>
#include <QApplication>
#include <QDBusArgument>
#include <QDialog>
#include <QMetaObject>
#include <QTimer>

#include <stdexcept>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using test::BusMenuItem;
using test::StatusItemClient;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> labels(const BusMenuItem& menu) {
    std::vector<std::string> result;
    for (const auto& child : menu.children) {
        result.push_back(child.properties["type"] == "separator" ? "---" : child.label());
    }
    return result;
}

/// The menu as a host reads it over the bus.
class StatusItemMenuTest : public test::StatusItemTest {
protected:
    void click(const std::string& label) { host.click(host.entry(label).id); }

    bool runUntilActions(std::size_t count) {
        return session.runUntil([&] { return delegate.actions.size() >= count; });
    }

    /// The toolkit's action for the item with this title.
    static QAction& actionOf(const QString& title) {
        for (auto* widget : QApplication::topLevelWidgets()) {
            for (auto* action : widget->actions()) {
                if (action->text().remove('&') == title) {
                    return *action;
                }
            }
        }
        throw std::runtime_error("no action " + title.toStdString());
    }

    std::string createAndRegister() {
        createItem();
        return registeredItem(*panel);
    }

    std::unique_ptr<test::ChildProcess> panel = startHost();
    StatusItemClient host{session, createAndRegister()};
};

TEST_F(StatusItemMenuTest, HasItsItemsInOrder) {
    const auto menu = host.menu();
    EXPECT_THAT(labels(menu), ElementsAre("Manage", "---", "Language", "Login", "Quit"));
    EXPECT_THAT(labels(menu.children.at(2)), ElementsAre("日本語", "English"));
}

TEST_F(StatusItemMenuTest, MarksWhatIsOnAndOnlyWhatCanBe) {
    EXPECT_TRUE(host.entry("日本語").isOn());
    EXPECT_FALSE(host.entry("English").isOn());
    EXPECT_FALSE(host.entry("Login").isOn());
    EXPECT_EQ(host.entry("Login").properties["toggle-type"].toString(), "checkmark");
    EXPECT_FALSE(host.entry("Manage").properties.contains("toggle-type"));
}

TEST_F(StatusItemMenuTest, TellsTheKeyEquivalent) {
    const auto property = host.entry("Quit").properties["shortcut"];
    std::vector<QStringList> combinations;
    const auto argument = property.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QStringList keys;
        argument >> keys;
        combinations.push_back(keys);
    }
    argument.endArray();
    EXPECT_THAT(combinations, ElementsAre(QStringList{"Control", "Q"}));
    EXPECT_FALSE(host.entry("Manage").properties.contains("shortcut"));
}

TEST_F(StatusItemMenuTest, SendsTheActionOfEveryItemOnce) {
    for (const auto& label : {"Manage", "日本語", "English", "Login", "Quit"}) {
        click(label);
    }
    EXPECT_TRUE(runUntilActions(5));
    EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow", "changeLanguage", "changeLanguage",
                                              "toggleLogin", "quitApp"));
    EXPECT_THAT(delegate.senders,
                ElementsAre(manage.get(), japanese.get(), english.get(), login.get(), quit.get()));
}

TEST_F(StatusItemMenuTest, ChangesNoCheckMarkByItself) {
    click("Login");
    click("日本語");
    EXPECT_TRUE(runUntilActions(2));
    EXPECT_FALSE(host.entry("Login").isOn());
    EXPECT_TRUE(host.entry("日本語").isOn());
}

TEST_F(StatusItemMenuTest, ShowsTheChangedCheckMark) {
    login->isOn = true;
    item->menuItemDidChange(*login);
    EXPECT_TRUE(host.entry("Login").isOn());
    login->isOn = false;
    item->menuItemDidChange(*login);
    EXPECT_FALSE(host.entry("Login").isOn());
}

TEST_F(StatusItemMenuTest, IsReplacedAsAWhole) {
    const auto oldQuit = host.entry("Quit").id;
    item->setMenu({test::menuItem("終了", "quitApp"), test::menuItem("管理", "openMainWindow")});
    EXPECT_THAT(labels(host.menu()), ElementsAre("終了", "管理"));

    host.click(oldQuit); // as by a host that does not know the new menu yet
    click("管理");
    EXPECT_TRUE(runUntilActions(1));
    EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow"));
}

TEST_F(StatusItemMenuTest, MayBeReplacedByTheActionOfItsOwnItem) {
    delegate.onAction = [this] { item->setMenu({test::menuItem("New", "new")}); };
    click("English");
    EXPECT_TRUE(runUntilActions(1));
    EXPECT_THAT(labels(host.menu()), ElementsAre("New"));
    click("New");
    EXPECT_TRUE(runUntilActions(2));
    EXPECT_THAT(delegate.actions, ElementsAre("changeLanguage", "new"));
}

TEST_F(StatusItemMenuTest, SendsAnActionAlthoughItsMenuWasReplacedMeanwhile) {
    const auto* chosen = login.get();
    actionOf("Login").trigger();
    login.reset();
    item->setMenu({});
    EXPECT_TRUE(runUntilActions(1));
    EXPECT_THAT(delegate.actions, ElementsAre("toggleLogin"));
    EXPECT_THAT(delegate.senders, ElementsAre(chosen));
}

TEST_F(StatusItemMenuTest, SendsNothingAnyMoreWhenTheItemIsGone) {
    actionOf("Login").trigger();
    item.reset();
    bool fence = false;
    const auto setFence = [&] { fence = true; };
    QMetaObject::invokeMethod(&window, setFence, Qt::QueuedConnection);
    EXPECT_TRUE(session.runUntil([&] { return fence; }));
    EXPECT_THAT(delegate.actions, IsEmpty());
}

TEST_F(StatusItemMenuTest, GoesOnWhileAnActionShowsADialog) {
    QDialog dialog;
    const auto duringDialog = [&] {
        click("Login");
        EXPECT_TRUE(runUntilActions(2));
        item->setMenu({test::menuItem("New", "new")});
        click("New");
        EXPECT_TRUE(runUntilActions(3));
        dialog.accept();
    };
    delegate.onAction = [&] {
        if (delegate.actions.size() == 1) {
            QTimer::singleShot(0, &dialog, duringDialog);
            dialog.exec();
        }
    };
    click("Manage");
    EXPECT_TRUE(runUntilActions(3));
    EXPECT_THAT(delegate.actions, ElementsAre("openMainWindow", "toggleLogin", "new"));
}

TEST_F(StatusItemMenuTest, OpensAtAClickOnTheItem) {
    host.activate();
    EXPECT_TRUE(session.runUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    item->setMenu({test::menuItem("New", "new")});
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(StatusItemMenuTest, HearsItsKeyEquivalentWhileItIsOpen) {
    host.activate();
    EXPECT_TRUE(session.runUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    test::KeyInjector keyboard(session.desktop().display());
    keyboard.strike({"LCTL", "AC01"}); // Control+A is nobody's
    keyboard.strike({"LCTL", "AD01"});
    EXPECT_TRUE(runUntilActions(1));
    EXPECT_THAT(delegate.actions, ElementsAre("quitApp"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(StatusItemMenuTest, AKeyThatTheToolkitHasNoNameForChoosesNothing) {
    const auto layouts =
        session.desktop().start({"setxkbmap", "-layout", "us,gb", "-option", "grp:menu_toggle"});
    ASSERT_EQ(layouts->wait(), 0) << layouts->errors();
    host.activate();
    EXPECT_TRUE(session.runUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    test::KeyInjector keyboard(session.desktop().display());
    keyboard.strike({"COMP"}); // switches the layout
    keyboard.strike({"LCTL", "AD01"});
    EXPECT_TRUE(runUntilActions(1));
    EXPECT_THAT(delegate.actions, ElementsAre("quitApp"));
}

TEST_F(StatusItemMenuTest, HearsItsKeyEquivalentWhileASubmenuIsOpen) {
    host.activate();
    EXPECT_TRUE(session.runUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    const auto* menu = QApplication::activePopupWidget();
    test::KeyInjector keyboard(session.desktop().display());
    keyboard.strike({"DOWN"});
    keyboard.strike({"DOWN"});
    keyboard.strike({"RGHT"});
    EXPECT_TRUE(session.runUntil([&] { return QApplication::activePopupWidget() != menu; }));
    keyboard.strike({"LCTL", "AD01"});
    EXPECT_TRUE(runUntilActions(1));
    EXPECT_THAT(delegate.actions, ElementsAre("quitApp"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

} // namespace
} // namespace hollowfernpike
