#include "app/AppDelegate.h"

#include "app/Language.h"
#include "hotkeys/Shortcuts.h"
#include "support/fakes/FakeServices.h"

#include <QApplication>
#include <QMessageBox>

#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using namespace platform::event_flags;
using test::addShortcut;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::SizeIs;

class AppDelegateTest : public testing::Test {
protected:
    /// Runs `event` within the first call of this name.
    void during(const std::string& call, const std::function<void()>& event) {
        desktop.log.onCall = [this, call, event](const std::string& present) {
            if (present == call) {
                desktop.log.onCall = nullptr;
                event();
            }
        };
    }

    /// Whether the map follows a change of the list at once.
    static bool isListFollowed() {
        addShortcut("Editor", 0, command);
        return !HotkeyManager::shared().shortcutMap()->empty();
    }

    static std::vector<std::string> combinations() {
        std::vector<std::string> keys;
        for (const auto& [key, shortcut] : *HotkeyManager::shared().shortcutMap()) {
            keys.push_back(key);
        }
        return keys;
    }

    test::FakeServices desktop;
    AppDelegate delegate{platform::services()};
};

TEST_F(AppDelegateTest, AsksForThePermissionThenStartsTheHotkeysThenShowsTheItem) {
    delegate.applicationDidFinishLaunching();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("accessibilityTrust.isProcessTrustedWithPrompt",
                            "accessibilityTrust.isProcessTrusted", "eventTaps.create active",
                            "eventTap.createRunLoopSource", "eventTap.setInterest 0",
                            "runLoopSource.addToMainRunLoop", "eventTap.enable true",
                            "statusBar.createStatusItem",
                            "statusItem.setImage keyboard Hollowfernpike", "statusItem.setMenu"));
}

TEST_F(AppDelegateTest, AsksTwiceAtOnceWhileThePermissionIsMissing) {
    desktop.accessibilityTrust.trusted = false;
    delegate.applicationDidFinishLaunching();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("accessibilityTrust.isProcessTrustedWithPrompt",
                            "accessibilityTrust.isProcessTrusted",
                            "accessibilityTrust.isProcessTrustedWithPrompt",
                            "statusBar.createStatusItem",
                            "statusItem.setImage keyboard Hollowfernpike", "statusItem.setMenu"));
    EXPECT_EQ(desktop.mainQueue.pending(), 1);
}

TEST_F(AppDelegateTest, NothingComesBeforeTheQuestionForThePermission) {
    bool isAsked = false;
    during("accessibilityTrust.isProcessTrustedWithPrompt", [&] {
        isAsked = true;
        EXPECT_FALSE(platform::SharedInstance<AppLauncher>::existsForTesting());
        EXPECT_FALSE(platform::SharedInstance<ShortcutStore>::existsForTesting());
        EXPECT_FALSE(isListFollowed());
        desktop.notificationCenter.post(languageDidChange);
        EXPECT_THAT(desktop.statusBar.menus, IsEmpty());
    });
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(isAsked);
}

TEST_F(AppDelegateTest, TheLauncherAndTheObserverOfTheListComeBeforeTheHotkeysStart) {
    bool isStarted = false;
    during("accessibilityTrust.isProcessTrusted", [&] {
        isStarted = true;
        EXPECT_TRUE(platform::SharedInstance<AppLauncher>::existsForTesting());
        EXPECT_TRUE(isListFollowed());
    });
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(isStarted);
}

// The observer rebuilds the menu, which is fatal as long as there is no item to show it.
TEST_F(AppDelegateTest, TheObserverOfTheLanguageComesBeforeTheHotkeysStart) {
    during("accessibilityTrust.isProcessTrusted", [] { Language::setCurrent(Language::english); });
    EXPECT_DEATH(delegate.applicationDidFinishLaunching(), "before the status item");
}

TEST_F(AppDelegateTest, TheMapFollowsEveryChangeOfTheListAtOnce) {
    delegate.applicationDidFinishLaunching();
    auto& store = ShortcutStore::shared();
    addShortcut("Editor", 0, command);
    EXPECT_THAT(combinations(), ElementsAre("0:1048576"));

    const auto exported = store.exportData();
    auto edited = store.shortcuts().front();
    edited.keyCode = 1;
    store.update(edited);
    EXPECT_THAT(combinations(), ElementsAre("1:1048576"));

    store.importData(*exported);
    EXPECT_THAT(combinations(), ElementsAre("0:1048576"));
    store.remove(edited.id);
    EXPECT_THAT(combinations(), IsEmpty());
}

TEST_F(AppDelegateTest, TheLauncherExistsBeforeTheFirstKeyPress) {
    EXPECT_FALSE(platform::SharedInstance<AppLauncher>::existsForTesting());
    delegate.applicationDidFinishLaunching();
    EXPECT_TRUE(platform::SharedInstance<AppLauncher>::existsForTesting());
}

TEST_F(AppDelegateTest, DoesNotFollowTheListBeforeTheStart) {
    addShortcut("Editor", 0, command);
    EXPECT_THAT(*HotkeyManager::shared().shortcutMap(), IsEmpty());
}

TEST_F(AppDelegateTest, TerminationEndsTheTapAndEmptiesTheMap) {
    addShortcut("Editor", 0, command);
    delegate.applicationDidFinishLaunching();
    ASSERT_THAT(HotkeyManager::shared().eventTap(), NotNull());
    delegate.applicationWillTerminate();
    EXPECT_THAT(HotkeyManager::shared().eventTap(), IsNull());
    EXPECT_THAT(*HotkeyManager::shared().shortcutMap(), IsEmpty());
}

TEST_F(AppDelegateTest, ALanguageChosenAfterTerminationStillRebuildsTheMenu) {
    delegate.applicationDidFinishLaunching();
    delegate.applicationWillTerminate();
    Language::setCurrent(Language::english);
    ASSERT_THAT(desktop.statusBar.menus, SizeIs(2));
    EXPECT_EQ(desktop.statusBar.menus.back().front()->title, "Manage Shortcuts");
}

TEST_F(AppDelegateTest, AChangeAfterTerminationFillsTheMapButSeesNoKeys) {
    delegate.applicationDidFinishLaunching();
    delegate.applicationWillTerminate();
    addShortcut("Editor", 0, command);
    EXPECT_THAT(*HotkeyManager::shared().shortcutMap(), SizeIs(1));
    EXPECT_THAT(HotkeyManager::shared().eventTap(), IsNull());
}

class UnsavedChangeTest : public AppDelegateTest,
                          public testing::WithParamInterface<Language::Case> {
protected:
    static std::vector<const QMessageBox*> boxes() {
        std::vector<const QMessageBox*> found;
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            const auto* box = qobject_cast<const QMessageBox*>(window);
            if (box != nullptr && box->isVisible()) {
                found.push_back(box);
            }
        }
        return found;
    }
};

TEST_P(UnsavedChangeTest, IsToldOfOnceInTheLanguageOfTheWindows) {
    delegate.applicationDidFinishLaunching();
    Language::setCurrent(GetParam());
    desktop.fileManager.writeError = {"/full/shortcuts.json",
                                      std::make_error_code(std::errc::no_space_on_device), "満杯",
                                      "The disk is full"};
    addShortcut("Editor", 0, command);
    addShortcut("Browser", 1, command);
    ASSERT_THAT(boxes(), SizeIs(1));
    const auto& box = *boxes().front();
    EXPECT_FALSE(box.isModal());
    const bool english = GetParam() == Language::english;
    EXPECT_EQ(box.text(),
              english ? "The change could not be saved." : "変更を保存できませんでした。");
    EXPECT_TRUE(box.informativeText().startsWith(english ? "The disk is full" : "満杯"));
    EXPECT_TRUE(box.informativeText().endsWith(english
                                                   ? "It lasts until the program ends."
                                                   : "この変更はプログラムの終了時に失われます。"));
    QMetaObject::invokeMethod(qApp, "aboutToQuit");
    EXPECT_THAT(boxes(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Languages, UnsavedChangeTest,
                         testing::Values(Language::japanese, Language::english),
                         [](const auto& test) {
                             return test.param == Language::english ? "english" : "japanese";
                         });

} // namespace

} // namespace hollowfernpike
