#include "app/AppDelegate.h"

#include "hotkeys/Shortcuts.h"
#include "support/FakeServices.h"

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

TEST_F(AppDelegateTest, AChangeAfterTerminationFillsTheMapButSeesNoKeys) {
    delegate.applicationDidFinishLaunching();
    delegate.applicationWillTerminate();
    addShortcut("Editor", 0, command);
    EXPECT_THAT(*HotkeyManager::shared().shortcutMap(), SizeIs(1));
    EXPECT_THAT(HotkeyManager::shared().eventTap(), IsNull());
}

} // namespace

} // namespace hollowfernpike
