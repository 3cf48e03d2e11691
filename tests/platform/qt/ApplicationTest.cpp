#include "platform/qt/Application.h"

#include "platform/qt/RecordingDelegate.h"
#include "support/fakes/FakeOwnWindows.h"

#include <QApplication>
#include <QDialog>
#include <QMainWindow>
#include <QMenu>
#include <QTimer>

#include <memory>
#include <vector>

#include <gmock/gmock.h>

namespace hollowfernpike {
namespace {

using platform::ActivationPolicy;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class RecordingTarget final : public platform::ActionTarget {
public:
    std::vector<std::string> actions;

    void performAction(std::string_view action, const platform::MenuItem* /*sender*/) override {
        actions.emplace_back(action);
    }
};

class ApplicationTest : public testing::Test {
protected:
    ApplicationTest() { application.setDelegate(&delegate); }

    /// Runs the application with this as the first thing that happens in its event loop.
    int runWith(std::function<void()> first) {
        delegate.onLaunch = [first = std::move(first)] { QTimer::singleShot(0, first); };
        return application.run();
    }

    bool isInTaskBar(const QWidget& widget) { return ownWindows.inTaskBar.at(widget.winId()); }

    test::RecordingDelegate delegate;
    test::FakeOwnWindows ownWindows;
    qt::Application application{ownWindows};
};

auto isWindow(const std::string& className, bool isVisible) {
    return AllOf(Field(&platform::ApplicationWindow::className, className),
                 Field(&platform::ApplicationWindow::isVisible, isVisible));
}

TEST_F(ApplicationTest, TellsTheDelegateOfTheBeginningAndTheEnd) {
    const int status = runWith([this] {
        EXPECT_TRUE(delegate.launched);
        EXPECT_FALSE(delegate.terminated);
        application.terminate();
        EXPECT_FALSE(delegate.terminated);
    });
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(delegate.terminated);
}

TEST_F(ApplicationTest, EndsEvenIfItIsToldSoBeforeItRuns) {
    delegate.onLaunch = [this] { application.terminate(); };
    EXPECT_EQ(application.run(), 0);
    EXPECT_TRUE(delegate.terminated);
}

TEST_F(ApplicationTest, EndsAlthoughModalDialogsAreOpen) {
    QDialog outer;
    QDialog inner;
    int status = -1;
    status = runWith([&] {
        QTimer::singleShot(0, &outer, [&] {
            QTimer::singleShot(0, &inner, [&] { application.terminate(); });
            inner.exec();
        });
        outer.exec();
        EXPECT_FALSE(delegate.terminated);
    });
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(delegate.terminated);
}

TEST_F(ApplicationTest, EndsAlthoughADialogThatIsAskedLaterWouldBlock) {
    QDialog later;
    const int status = runWith([&] {
        QDialog dialog;
        QTimer::singleShot(0, &dialog, [&] { application.terminate(); });
        dialog.exec();
        EXPECT_EQ(later.exec(), QDialog::Rejected);
    });
    EXPECT_EQ(status, 0);
}

TEST_F(ApplicationTest, RunsOnWhenItsLastWindowCloses) {
    QMainWindow window;
    bool ranOn = false;
    EXPECT_EQ(runWith([&] {
                  window.show();
                  window.close();
                  QTimer::singleShot(0, &window, [&] {
                      ranOn = true;
                      application.terminate();
                  });
              }),
              0);
    EXPECT_TRUE(ranOn);
}

TEST_F(ApplicationTest, SendsAnActionToItsTarget) {
    RecordingTarget target;
    platform::MenuItem item;
    item.action = "act";
    item.target = &target;
    application.sendAction(item);
    EXPECT_THAT(target.actions, ElementsAre("act"));
    EXPECT_THAT(delegate.actions, IsEmpty());
}

TEST_F(ApplicationTest, SendsAnActionWithoutTargetToTheDelegate) {
    platform::MenuItem item;
    item.action = "act";
    application.sendAction(item);
    EXPECT_THAT(delegate.actions, ElementsAre("act"));
    EXPECT_THAT(delegate.senders, ElementsAre(&item));
}

TEST_F(ApplicationTest, SendsNothingWithoutTargetAndDelegate) {
    application.setDelegate(nullptr);
    application.sendAction({});
    application.performAction("act");
    EXPECT_THAT(delegate.actions, IsEmpty());
}

TEST_F(ApplicationTest, PerformsActionsThatNoItemAsksFor) {
    application.performAction("act");
    EXPECT_THAT(delegate.actions, ElementsAre("act"));
    EXPECT_THAT(delegate.senders, ElementsAre(nullptr));
}

TEST_F(ApplicationTest, ListsItsWindowsVisibleOrNot) {
    EXPECT_THAT(application.windows(), IsEmpty());
    QMainWindow shown;
    QDialog hidden;
    QMenu menu;
    QWidget child(&shown);
    shown.show();
    EXPECT_THAT(application.windows(),
                UnorderedElementsAre(isWindow("QMainWindow", true), isWindow("QDialog", false)));
}

TEST_F(ApplicationTest, ListsAMinimisedWindowAsOneThatIsNotVisible) {
    QMainWindow window;
    window.showMinimized();
    EXPECT_THAT(application.windows(), ElementsAre(isWindow("QMainWindow", false)));
    window.showNormal();
    EXPECT_THAT(application.windows(), ElementsAre(isWindow("QMainWindow", true)));
}

TEST_F(ApplicationTest, KeepsWindowsOutOfTheTaskBarWhileItsStatusItemShows) {
    application.setActivationPolicy(ActivationPolicy::accessory);
    application.setStatusItemShown(true);
    QMainWindow window;
    QDialog dialog;
    window.show();
    dialog.show();
    EXPECT_FALSE(isInTaskBar(window));
    EXPECT_FALSE(isInTaskBar(dialog));
}

TEST_F(ApplicationTest, ShowsWindowsInTheTaskBarWhereNothingElseLeadsBackToThem) {
    application.setActivationPolicy(ActivationPolicy::accessory);
    QMainWindow window;
    window.show();
    EXPECT_TRUE(isInTaskBar(window));
}

TEST_F(ApplicationTest, MovesOpenWindowsWhenTheStatusItemComesAndGoes) {
    application.setActivationPolicy(ActivationPolicy::accessory);
    QMainWindow window;
    window.show();
    application.setStatusItemShown(true);
    EXPECT_FALSE(isInTaskBar(window));
    application.setStatusItemShown(false);
    EXPECT_TRUE(isInTaskBar(window));
}

TEST_F(ApplicationTest, MovesOpenWindowsWhenThePolicyChanges) {
    application.setStatusItemShown(true);
    QMainWindow window;
    window.show();
    EXPECT_TRUE(isInTaskBar(window));
    application.setActivationPolicy(ActivationPolicy::accessory);
    EXPECT_FALSE(isInTaskBar(window));
    application.setActivationPolicy(ActivationPolicy::regular);
    EXPECT_TRUE(isInTaskBar(window));
}

TEST_F(ApplicationTest, IsShownAsAnApplicationByItsPolicyWithoutAnyWindow) {
    application.setStatusItemShown(true);
    application.setActivationPolicy(ActivationPolicy::accessory);
    EXPECT_EQ(ownWindows.shownAsApplication, false);
    application.setActivationPolicy(ActivationPolicy::regular);
    EXPECT_EQ(ownWindows.shownAsApplication, true);
}

TEST_F(ApplicationTest, LeavesTheTaskBarAloneWhenNothingChanges) {
    application.setActivationPolicy(ActivationPolicy::accessory);
    application.setStatusItemShown(true);
    QMainWindow window;
    window.show();
    ownWindows.inTaskBar.clear();
    application.setActivationPolicy(ActivationPolicy::accessory);
    application.setStatusItemShown(true);
    EXPECT_THAT(ownWindows.inTaskBar, IsEmpty());
}

TEST_F(ApplicationTest, LeavesMenusAlone) {
    QMenu menu;
    menu.addAction("item");
    menu.popup({0, 0});
    EXPECT_THAT(ownWindows.inTaskBar, IsEmpty());
    menu.hide();
}

TEST_F(ApplicationTest, BringsTheWindowToTheFrontThatWasRaisedLast) {
    QMainWindow first;
    QMainWindow second;
    first.show();
    second.show();
    second.raise();
    first.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(first.winId()));
}

TEST_F(ApplicationTest, BringsAModalDialogToTheFrontBeforeAnyWindow) {
    QMainWindow window;
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    window.show();
    window.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(dialog.winId()));
}

TEST_F(ApplicationTest, BringsAModalDialogToTheFrontAlthoughItBelongsToAnotherWindow) {
    QMainWindow owner;
    QMainWindow window;
    QDialog dialog(&owner);
    dialog.setWindowModality(Qt::ApplicationModal);
    owner.show();
    dialog.show();
    window.show();
    window.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(dialog.winId()));
}

TEST_F(ApplicationTest, IsHeldUpWhileADialogIsOpenThatBelongsToNoWindow) {
    QMainWindow window;
    QDialog sheet(&window);
    QDialog dialog;
    dialog.setModal(true);
    window.show();
    sheet.open();
    EXPECT_FALSE(application.hasModalWindow());
    dialog.show();
    EXPECT_TRUE(application.hasModalWindow());
    dialog.hide();
    EXPECT_FALSE(application.hasModalWindow());
}

TEST_F(ApplicationTest, IsHeldUpByADialogThoughASheetOpenedAfterIt) {
    QMainWindow window;
    QDialog sheet(&window);
    QDialog dialog;
    dialog.setModal(true);
    window.show();
    dialog.show();
    sheet.open();
    window.raise();
    EXPECT_TRUE(application.hasModalWindow());
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(dialog.winId()));
}

TEST_F(ApplicationTest, BringsTheSheetOfAModalDialogToTheFront) {
    QDialog dialog;
    QDialog sheet(&dialog);
    dialog.setModal(true);
    dialog.show();
    sheet.open();
    EXPECT_TRUE(application.hasModalWindow());
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(sheet.winId()));
}

TEST_F(ApplicationTest, BringsTheLatestOfSeveralModalDialogsToTheFront) {
    QDialog dialogs[4];
    for (QDialog& dialog : dialogs) {
        dialog.setModal(true);
        dialog.show();
        ownWindows.broughtToFront.clear();
        application.activateIgnoringOtherApps();
        EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(dialog.winId()));
    }
}

/// Two windows, the first of which has a sheet.
class SheetTest : public ApplicationTest {
protected:
    SheetTest() {
        first.show();
        second.show();
        sheet.open();
    }

    QMainWindow first;
    QMainWindow second;
    QDialog sheet{&first};
};

TEST_F(SheetTest, ComesToTheFrontWithItsWindow) {
    first.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(sheet.winId()));
}

TEST_F(SheetTest, StaysWhereItIsWhenAnotherWindowIsRaised) {
    second.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(second.winId()));
}

TEST_F(SheetTest, ComesToTheFrontWithItsWindowThoughAnotherOpenedLater) {
    QDialog later(&second);
    later.open();
    first.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(sheet.winId()));
}

TEST_F(SheetTest, LetsItsOwnSheetComeToTheFront) {
    QDialog inner(&sheet);
    inner.open();
    first.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(inner.winId()));
}

TEST_F(SheetTest, ThatIsHiddenGivesWayToItsWindow) {
    QDialog hidden(&second);
    hidden.setWindowModality(Qt::WindowModal);
    second.raise();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, ElementsAre(second.winId()));
}

TEST_F(ApplicationTest, ThatBeginsAsAnAccessoryIsNeverShownAsAnApplication) {
    test::FakeOwnWindows windows;
    qt::Application accessory(windows, ActivationPolicy::accessory);
    accessory.setStatusItemShown(true);
    EXPECT_THAT(windows.shownAsApplication, testing::Optional(false));
}

TEST_F(ApplicationTest, BringsNothingToTheFrontThatIsHiddenOrGone) {
    application.activateIgnoringOtherApps();
    auto window = std::make_unique<QMainWindow>();
    window->show();
    window->raise();
    window->hide();
    application.activateIgnoringOtherApps();
    window.reset();
    application.activateIgnoringOtherApps();
    EXPECT_THAT(ownWindows.broughtToFront, IsEmpty());
}

} // namespace
} // namespace hollowfernpike
