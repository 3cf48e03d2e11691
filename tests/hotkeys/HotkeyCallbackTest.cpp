#include "hotkeys/HotkeyManager.h"

#include "hotkeys/Shortcuts.h"
#include "support/fakes/FakeServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

namespace hollowfernpike {

namespace {

using namespace platform::event_flags;
using platform::KeyEvent;
using test::addShortcut;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;

/// The launcher finds neither window nor process, so that every hit ends in a launch by path.
class HotkeyCallbackTest : public testing::Test {
protected:
    void start() {
        HotkeyManager::shared().start();
        desktop.log.clear();
    }
    bool press(std::int64_t keyCode, std::uint64_t flags) {
        return desktop.eventTaps.tap()->press(keyCode, flags);
    }
    std::ptrdiff_t launches(const std::string& name) const {
        return std::ranges::count(desktop.log.calls(), "workspace.openApplication /applications/" +
                                                           name + ".desktop activating");
    }

    test::FakeServices desktop;
};

class HotkeyCallbackDeathTest : public HotkeyCallbackTest {};

TEST_F(HotkeyCallbackTest, HitSwallowsTheKeyPressAndLaunches) {
    addShortcut("Editor", 0, command);
    start();
    EXPECT_FALSE(press(0, command));
    EXPECT_EQ(launches("Editor"), 1);
}

TEST_F(HotkeyCallbackTest, HitReturnsNull) {
    addShortcut("Editor", 0, command);
    start();
    const KeyEvent event{.keyCode = 0, .flags = command};
    EXPECT_THAT(hotkeyEventTapCallback(nullptr, platform::eventKeyDown, &event, nullptr), IsNull());
}

TEST_F(HotkeyCallbackTest, MissReturnsTheVeryEventAndDoesNothing) {
    addShortcut("Editor", 0, command);
    start();
    const KeyEvent event{.keyCode = 1, .flags = command | nonCoalesced};
    EXPECT_EQ(hotkeyEventTapCallback(nullptr, platform::eventKeyDown, &event, nullptr), &event);
    EXPECT_EQ(event.keyCode, 1);
    EXPECT_EQ(event.flags, command | nonCoalesced);
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
}

TEST_F(HotkeyCallbackTest, LauncherIsGivenWhatTheMatchedShortcutHolds) {
    addShortcut("Editor", 0, command);
    addShortcut("Player", 0, command | shift);
    desktop.windows.visible->push_back({.ownerName = "Editor", .ownerProcess = 10, .layer = 0});
    start();
    press(0, command | shift);
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo",
                            "runningApplications.withBundleIdentifier org.example.Player",
                            "workspace.openApplication /applications/Player.desktop activating"));
    desktop.log.clear();
    press(0, command);
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("windows.copyWindowInfo", "windows.bringToFront 10"));
}

TEST_F(HotkeyCallbackTest, FewerOrMoreModifiersAreAMiss) {
    addShortcut("Editor", 0, command | shift);
    start();
    EXPECT_TRUE(press(0, command));
    EXPECT_TRUE(press(0, 0));
    EXPECT_TRUE(press(0, command | shift | option));
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(HotkeyCallbackTest, CapsLockFnKeypadAndLowBitsDoNotMatter) {
    addShortcut("Editor", 0, command);
    start();
    int expected = 0;
    for (const auto extra :
         {capsLock, secondaryFunction, numericPad, help, nonCoalesced, std::uint64_t{0xFF},
          std::uint64_t{1} << 63, capsLock | secondaryFunction | numericPad | nonCoalesced}) {
        EXPECT_FALSE(press(0, command | extra)) << extra;
        EXPECT_EQ(launches("Editor"), ++expected) << extra;
    }
}

TEST_F(HotkeyCallbackTest, ExtraBitsStoredInTheShortcutDoNotMatter) {
    addShortcut("Editor", 0, command | capsLock | numericPad | nonCoalesced);
    start();
    EXPECT_FALSE(press(0, command));
    EXPECT_FALSE(press(0, command | secondaryFunction));
    EXPECT_EQ(launches("Editor"), 2);
}

TEST_F(HotkeyCallbackTest, OfTwoShortcutsWithTheSameCombinationTheLastIsLaunched) {
    addShortcut("First", 0, command);
    addShortcut("Last", 0, command | capsLock);
    start();
    press(0, command);
    EXPECT_EQ(launches("First"), 0);
    EXPECT_EQ(launches("Last"), 1);
}

TEST_F(HotkeyCallbackTest, ShortcutWithoutModifiersSwallowsTheBareKey) {
    addShortcut("Editor", 122, 0);
    start();
    EXPECT_FALSE(press(122, nonCoalesced | secondaryFunction));
    EXPECT_TRUE(press(122, shift));
    EXPECT_EQ(launches("Editor"), 1);
}

TEST_F(HotkeyCallbackTest, EmptyListPassesEveryKeyPress) {
    start();
    for (std::int64_t keyCode = 0; keyCode < 128; ++keyCode) {
        EXPECT_TRUE(press(keyCode, 0));
        EXPECT_TRUE(press(keyCode, modifierMask));
    }
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(HotkeyCallbackTest, HeldCombinationLaunchesOnEveryRepeat) {
    addShortcut("Editor", 0, command);
    start();
    for (int repeat = 0; repeat < 30; ++repeat) {
        EXPECT_FALSE(press(0, command));
    }
    EXPECT_EQ(launches("Editor"), 30);
}

TEST_F(HotkeyCallbackTest, ListenOnlyTapLaunchesAndLetsTheKeyPressThrough) {
    desktop.eventTaps.refusesActive = true;
    addShortcut("Editor", 0, command);
    start();
    EXPECT_TRUE(press(0, command));
    EXPECT_EQ(launches("Editor"), 1);
}

TEST_F(HotkeyCallbackTest, HighestKeyCodeMatches) {
    addShortcut("Editor", 65535, command);
    start();
    EXPECT_FALSE(press(65535, command));
}

TEST_F(HotkeyCallbackTest, OtherEventTypesPassWhateverTheyCarry) {
    addShortcut("Editor", 0, command);
    start();
    const KeyEvent event{.keyCode = 0, .flags = command};
    const KeyEvent impossible{.keyCode = -1, .flags = 0};
    for (const platform::EventType type : {0U, 1U, 9U, 11U, 12U, 22U, 0xFFFFFFFDU}) {
        EXPECT_EQ(desktop.eventTaps.tap()->deliver(type, &event), &event) << type;
        EXPECT_EQ(desktop.eventTaps.tap()->deliver(type, &impossible), &impossible) << type;
    }
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
}

TEST_F(HotkeyCallbackTest, DisabledTapIsEnabledAgainRightAfterTheCallback) {
    for (const auto reason :
         {platform::eventTapDisabledByTimeout, platform::eventTapDisabledByUserInput}) {
        start();
        desktop.eventTaps.tap()->disableFromOutside(reason);
        EXPECT_THAT(desktop.log.calls(), IsEmpty());
        EXPECT_EQ(desktop.mainQueue.pending(), 1);
        desktop.mainQueue.runDue();
        EXPECT_THAT(desktop.log.calls(), ElementsAre("eventTap.enable true"));
        EXPECT_TRUE(desktop.eventTaps.tap()->isEnabled());
    }
}

TEST_F(HotkeyCallbackTest, DisablingEventIsPassedOn) {
    start();
    const KeyEvent event{.keyCode = -1, .flags = 0};
    for (const auto reason :
         {platform::eventTapDisabledByTimeout, platform::eventTapDisabledByUserInput}) {
        EXPECT_EQ(desktop.eventTaps.tap()->deliver(reason, &event), &event);
        EXPECT_THAT(desktop.eventTaps.tap()->deliver(reason, nullptr), IsNull());
    }
}

TEST_F(HotkeyCallbackTest, EveryDisablingIsAnsweredWithoutLimit) {
    start();
    for (int round = 0; round < 100; ++round) {
        desktop.eventTaps.tap()->disableFromOutside(platform::eventTapDisabledByTimeout);
        desktop.mainQueue.runDue();
        ASSERT_TRUE(desktop.eventTaps.tap()->isEnabled());
    }
    EXPECT_EQ(desktop.standardOutput.str(), "");
}

TEST_F(HotkeyCallbackTest, TapGoneBeforeItIsEnabledAgainIsLeftAlone) {
    start();
    desktop.eventTaps.tap()->disableFromOutside(platform::eventTapDisabledByTimeout);
    HotkeyManager::shared().stop();
    desktop.log.clear();
    desktop.mainQueue.runDue();
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(HotkeyCallbackTest, TapIsLiveAgainAfterItWasDisabled) {
    addShortcut("Editor", 0, command);
    start();
    desktop.eventTaps.tap()->disableFromOutside(platform::eventTapDisabledByUserInput);
    EXPECT_TRUE(press(0, command));
    desktop.mainQueue.runDue();
    EXPECT_FALSE(press(0, command));
    EXPECT_EQ(launches("Editor"), 1);
}

TEST_F(HotkeyCallbackTest, NewShortcutIsLiveOnceTheMapIsRebuilt) {
    start();
    EXPECT_TRUE(press(0, command));
    addShortcut("Editor", 0, command);
    HotkeyManager::shared().buildShortcutMap();
    EXPECT_FALSE(press(0, command));
}

TEST_F(HotkeyCallbackTest, FailedLaunchStillConsumesTheKeyPress) {
    desktop.workspace.result = {.processIdentifier = {},
                                .error = platform::LocalizedError("だめ", "no")};
    addShortcut("Editor", 0, command);
    start();
    EXPECT_FALSE(press(0, command));
    EXPECT_EQ(desktop.standardOutput.str(), "");
}

TEST_F(HotkeyCallbackTest, LaunchThatRunsOutOfMemoryStillConsumesTheKeyPress) {
    desktop.workspace.onOpen = [] { throw std::bad_alloc(); };
    addShortcut("Editor", 0, command);
    start();
    EXPECT_FALSE(press(0, command));
    EXPECT_EQ(launches("Editor"), 1);
    EXPECT_EQ(desktop.standardOutput.str(), "");
}

TEST_F(HotkeyCallbackTest, MapRebuiltDuringTheLaunchDoesNotDisturbIt) {
    addShortcut("Editor", 0, command);
    desktop.windows.onCopy = [] {
        ShortcutStore::shared().importData("[]");
        HotkeyManager::shared().buildShortcutMap();
    };
    start();
    EXPECT_FALSE(press(0, command));
    EXPECT_EQ(launches("Editor"), 1);
    EXPECT_TRUE(press(0, command));
}

TEST_F(HotkeyCallbackDeathTest, KeyCodeBelowZeroEndsTheProcess) {
    start();
    EXPECT_DEATH(press(-1, command), "key code -1");
}

TEST_F(HotkeyCallbackDeathTest, KeyCodeAbove65535EndsTheProcess) {
    addShortcut("Editor", 0, command);
    start();
    EXPECT_DEATH(press(65536, command), "key code 65536");
}

} // namespace

} // namespace hollowfernpike
