#include "app/AppDelegate.h"

#include "app/Language.h"
#include "hotkeys/Shortcuts.h"
#include "support/fakes/FakeServices.h"

#include <QApplication>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using platform::LoginItemStatus;
using platform::MenuItem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class StatusMenuTest : public testing::Test {
protected:
    StatusMenuTest() { desktop.application.setDelegate(&delegate); }

    void start() {
        delegate.applicationDidFinishLaunching();
        desktop.log.clear();
    }

    const platform::Menu& menu() const { return desktop.statusBar.menus.back(); }
    const platform::Menu& languages() const { return menu().at(4)->submenu; }
    bool marksLogin() const { return menu().at(5)->isOn.value(); }

    std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const auto& item : menu()) {
            result.push_back(item->isSeparator ? "-" : item->title);
        }
        return result;
    }

    std::vector<bool> languageMarks() const {
        std::vector<bool> marks;
        for (const auto& item : languages()) {
            marks.push_back(item->isOn.value());
        }
        return marks;
    }

    void choose(const MenuItem& item) { desktop.application.sendAction(item); }

    static std::vector<const QWidget*> visibleWindows() {
        std::vector<const QWidget*> windows;
        for (const auto* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible()) {
                windows.push_back(widget);
            }
        }
        return windows;
    }

    test::FakeServices desktop;
    AppDelegate delegate{platform::services()};
};

TEST_F(StatusMenuTest, IsJapaneseWithoutAChoiceOfTheUser) {
    start();
    EXPECT_THAT(titles(), ElementsAre("ショートカット管理", "ショートカットをエクスポート...",
                                      "ショートカットをインポート...", "-", "言語 / Language",
                                      "ログイン時に起動", "-", "終了"));
    EXPECT_THAT(languageMarks(), ElementsAre(true, false));
}

TEST_F(StatusMenuTest, IsEnglishIfTheUserChoseThat) {
    desktop.userDefaults.own["AppLanguage"] = std::string{"en"};
    start();
    EXPECT_THAT(titles(),
                ElementsAre("Manage Shortcuts", "Export Shortcuts...", "Import Shortcuts...", "-",
                            "言語 / Language", "Launch at Login", "-", "Quit"));
    EXPECT_THAT(languageMarks(), ElementsAre(false, true));
}

TEST_F(StatusMenuTest, LanguagesAreNamedInThemselves) {
    for (const auto* setting : {"ja", "en"}) {
        desktop.userDefaults.own["AppLanguage"] = std::string{setting};
        start();
        ASSERT_THAT(languages(), SizeIs(2));
        EXPECT_EQ(languages().at(0)->title, "日本語");
        EXPECT_EQ(languages().at(1)->title, "English");
    }
}

TEST_F(StatusMenuTest, OnlyExportImportAndLanguagesNameTheirTarget) {
    start();
    for (const std::size_t index : {0U, 4U, 5U, 7U}) {
        EXPECT_EQ(menu().at(index)->target, nullptr) << index;
    }
    for (const std::size_t index : {1U, 2U}) {
        EXPECT_EQ(menu().at(index)->target, &delegate) << index;
    }
    for (const auto& item : languages()) {
        EXPECT_EQ(item->target, &delegate) << item->title;
    }
}

TEST_F(StatusMenuTest, OnlyQuitHasAKey) {
    start();
    for (const auto& item : menu()) {
        EXPECT_EQ(item->keyEquivalent, item->action == "quitApp" ? 'q' : '\0') << item->title;
    }
}

TEST_F(StatusMenuTest, OnlyLoginAndLanguagesCanCarryAMark) {
    start();
    for (const auto& item : menu()) {
        EXPECT_EQ(item->isOn.has_value(), item->action == "toggleLaunchAtLogin") << item->title;
    }
}

TEST_F(StatusMenuTest, SwitchingTheLanguageRebuildsTheWholeMenuOnce) {
    start();
    desktop.loginItem.present = LoginItemStatus::enabled;
    choose(*languages().at(1));
    EXPECT_THAT(desktop.statusBar.menus, SizeIs(2));
    EXPECT_EQ(titles().front(), "Manage Shortcuts");
    EXPECT_THAT(languageMarks(), ElementsAre(false, true));
    EXPECT_TRUE(marksLogin()) << "read afresh";
    EXPECT_EQ(Language::current(), Language::english);
}

TEST_F(StatusMenuTest, ALanguageChosenElsewhereRebuildsTheMenuOnceToo) {
    start();
    Language::setCurrent(Language::english);
    EXPECT_THAT(desktop.statusBar.menus, SizeIs(2));
    EXPECT_EQ(titles().front(), "Manage Shortcuts");
    EXPECT_THAT(languageMarks(), ElementsAre(false, true));
}

TEST_F(StatusMenuTest, ChoosingTheActiveLanguageRebuildsTheMenuAsWell) {
    start();
    choose(*languages().at(0));
    EXPECT_THAT(desktop.statusBar.menus, SizeIs(2));
    EXPECT_THAT(languageMarks(), ElementsAre(true, false));
}

TEST_F(StatusMenuTest, AnItemThatRepresentsNoLanguageChangesNothing) {
    start();
    MenuItem item;
    item.action = "changeLanguage";
    choose(item);
    item.representedObject = std::string{"en"};
    choose(item);
    delegate.performAction("changeLanguage", nullptr);
    EXPECT_THAT(desktop.statusBar.menus, SizeIs(1));
    EXPECT_THAT(desktop.userDefaults.own, IsEmpty());
}

TEST_F(StatusMenuTest, UnknownActionsAreIgnored) {
    start();
    delegate.performAction("format", nullptr);
    delegate.performAction("", nullptr);
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

class LoginMarkTest : public StatusMenuTest, public testing::WithParamInterface<LoginItemStatus> {};

TEST_P(LoginMarkTest, IsOnExactlyWhenEnabled) {
    desktop.loginItem.present = GetParam();
    start();
    EXPECT_EQ(marksLogin(), GetParam() == LoginItemStatus::enabled);
}

INSTANTIATE_TEST_SUITE_P(Statuses, LoginMarkTest,
                         testing::Values(LoginItemStatus::notRegistered, LoginItemStatus::enabled,
                                         LoginItemStatus::requiresApproval,
                                         LoginItemStatus::notFound));

TEST_F(StatusMenuTest, TogglingLaunchAtLoginMovesItsMarkWithoutANewMenu) {
    start();
    choose(*menu().at(5));
    EXPECT_TRUE(marksLogin());
    EXPECT_THAT(desktop.statusBar.changed, ElementsAre(menu().at(5).get()));
    choose(*menu().at(5));
    EXPECT_FALSE(marksLogin());
    EXPECT_THAT(desktop.statusBar.menus, SizeIs(1));
}

TEST_F(StatusMenuTest, AFailedToggleLeavesTheMarkAsItWas) {
    start();
    desktop.loginItem.failure.emplace("書き込めません", "cannot be written");
    choose(*menu().at(5));
    EXPECT_FALSE(marksLogin());
}

TEST_F(StatusMenuTest, AFailedUnregistrationLeavesTheMarkOn) {
    desktop.loginItem.present = LoginItemStatus::enabled;
    start();
    desktop.loginItem.failure.emplace("削除できません", "cannot be removed");
    choose(*menu().at(5));
    EXPECT_THAT(desktop.log.calls(), ElementsAre("loginItem.unregisterItem"));
    EXPECT_TRUE(marksLogin());
}

TEST_F(StatusMenuTest, ARegistrationThatTheUserHasYetToApproveLeavesTheMarkOff) {
    start();
    desktop.loginItem.registered = LoginItemStatus::requiresApproval;
    choose(*menu().at(5));
    EXPECT_THAT(desktop.log.calls(), ElementsAre("loginItem.registerItem"));
    EXPECT_FALSE(marksLogin());
}

TEST_F(StatusMenuTest, WhatRequiresApprovalIsRegisteredAgain) {
    desktop.loginItem.present = LoginItemStatus::requiresApproval;
    desktop.loginItem.registered = LoginItemStatus::requiresApproval;
    start();
    choose(*menu().at(5));
    choose(*menu().at(5));
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("loginItem.registerItem", "loginItem.registerItem"));
    EXPECT_FALSE(marksLogin());
    desktop.loginItem.registered = LoginItemStatus::enabled;
    choose(*menu().at(5));
    EXPECT_TRUE(marksLogin());
}

TEST_F(StatusMenuTest, TheMarkFollowsTheMenuBuiltLast) {
    start();
    choose(*languages().at(1));
    choose(*menu().at(5));
    EXPECT_TRUE(marksLogin());
    EXPECT_FALSE(desktop.statusBar.menus.front().at(5)->isOn.value());
}

TEST_F(StatusMenuTest, QuitTerminatesTheApplication) {
    start();
    choose(*menu().at(7));
    EXPECT_THAT(desktop.log.calls(), ElementsAre("application.terminate"));
}

TEST_F(StatusMenuTest, ADialogThatWaitsForItsAnswerComesForwardInstead) {
    start();
    desktop.application.modal = true;
    for (const std::size_t index : {0U, 1U, 2U, 5U}) {
        choose(*menu().at(index));
    }
    choose(*languages().at(1));
    EXPECT_THAT(desktop.log.calls(),
                testing::AllOf(SizeIs(5), testing::Each("application.activateIgnoringOtherApps")));
    EXPECT_THAT(visibleWindows(), IsEmpty());
    EXPECT_EQ(Language::current(), Language::japanese);
}

TEST_F(StatusMenuTest, QuitDoesNotWaitForADialog) {
    start();
    desktop.application.modal = true;
    choose(*menu().at(7));
    EXPECT_THAT(desktop.log.calls(), ElementsAre("application.terminate"));
}

TEST_F(StatusMenuTest, TheWindowIsMadeWhenItIsOpenedForTheFirstTimeAndKept) {
    start();
    Language::setCurrent(Language::english);
    test::addShortcut("Editor", 0, platform::event_flags::command);
    EXPECT_THAT(QApplication::topLevelWidgets(), IsEmpty()) << "hidden ones counted";
    choose(*menu().at(0));
    const auto made = QApplication::topLevelWidgets();
    EXPECT_THAT(made, SizeIs(1));
    made.front()->close();
    choose(*menu().at(0));
    EXPECT_EQ(QApplication::topLevelWidgets(), made);
}

TEST_F(StatusMenuTest, ManageShortcutsTwiceShowsTheSameWindow) {
    start();
    ASSERT_THAT(visibleWindows(), IsEmpty());
    choose(*menu().at(0));
    const auto windows = visibleWindows();
    ASSERT_THAT(windows, SizeIs(1));
    choose(*menu().at(0));
    EXPECT_EQ(visibleWindows(), windows);
    EXPECT_THAT(desktop.log.calls(), ElementsAre("application.activateIgnoringOtherApps",
                                                 "application.activateIgnoringOtherApps"));
}

TEST_F(StatusMenuTest, ManageShortcutsShowsAClosedWindowAgain) {
    start();
    choose(*menu().at(0));
    auto windows = QApplication::topLevelWidgets();
    for (auto* window : windows) {
        window->close();
    }
    ASSERT_THAT(visibleWindows(), IsEmpty());
    choose(*menu().at(0));
    ASSERT_THAT(visibleWindows(), SizeIs(1));
    EXPECT_TRUE(windows.contains(const_cast<QWidget*>(visibleWindows().front())));
}

TEST_F(StatusMenuTest, TogglingBeforeThereIsAMenuEndsTheProcess) {
    EXPECT_DEATH(delegate.toggleLaunchAtLogin(), "login item");
}

} // namespace

} // namespace hollowfernpike
