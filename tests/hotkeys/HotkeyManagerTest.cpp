#include "hotkeys/HotkeyManager.h"

#include "hotkeys/Shortcuts.h"
#include "support/fakes/FakeServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using namespace platform::event_flags;
using namespace std::chrono_literals;
using test::addShortcut;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

class HotkeyManagerTest : public testing::Test {
protected:
    static HotkeyManager& manager() { return HotkeyManager::shared(); }
    static ShortcutMap map() { return *manager().shortcutMap(); }

    std::ptrdiff_t count(const std::string& call) const {
        return std::ranges::count(desktop.log.calls(), call);
    }
    std::ptrdiff_t prompts() const {
        return count("accessibilityTrust.isProcessTrustedWithPrompt");
    }
    std::ptrdiff_t tapsMade() const {
        return count("eventTaps.create active") + count("eventTaps.create listenOnly");
    }

    test::FakeServices desktop;
};

TEST_F(HotkeyManagerTest, BeforeTheStartThereIsNeitherTapNorSourceNorMap) {
    EXPECT_THAT(manager().eventTap(), IsNull());
    EXPECT_THAT(manager().runLoopSource(), IsNull());
    EXPECT_THAT(map(), IsEmpty());
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(HotkeyManagerTest, TrustedStartInstallsAnActiveTapInOrder) {
    addShortcut("Editor", 0, command);
    manager().start();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("accessibilityTrust.isProcessTrusted", "eventTaps.create active",
                            "eventTap.createRunLoopSource", "eventTap.setInterest 1",
                            "runLoopSource.addToMainRunLoop", "eventTap.enable true"));
    EXPECT_EQ(manager().eventTap(), desktop.eventTaps.tap());
    EXPECT_THAT(manager().runLoopSource(), NotNull());
    EXPECT_EQ(desktop.eventTaps.tap()->options(), platform::EventTapOptions::active);
    EXPECT_THAT(desktop.eventTaps.tap()->userInfo(), IsNull());
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
}

TEST_F(HotkeyManagerTest, TrustedStartBuildsTheMap) {
    addShortcut("Editor", 0, command | shift);
    manager().start();
    ASSERT_THAT(map(), Contains(testing::Key("0:1179648")));
    EXPECT_EQ(map().at("0:1179648").appName, "Editor");
}

TEST_F(HotkeyManagerTest, StartWithATapInstalledDoesNothing) {
    manager().start();
    desktop.log.clear();
    manager().start();
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(HotkeyManagerTest, RefusedActiveTapFallsBackToListenOnly) {
    desktop.eventTaps.refusesActive = true;
    manager().start();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("accessibilityTrust.isProcessTrusted", "eventTaps.create active",
                            "eventTaps.create listenOnly", "eventTap.createRunLoopSource",
                            "eventTap.setInterest 0", "runLoopSource.addToMainRunLoop",
                            "eventTap.enable true"));
    EXPECT_EQ(desktop.eventTaps.tap()->options(), platform::EventTapOptions::listenOnly);
    EXPECT_THAT(desktop.eventTaps.tap()->userInfo(), IsNull());
}

TEST_F(HotkeyManagerTest, BothTapsRefusedIsSilentAndFinal) {
    desktop.eventTaps.refusesActive = true;
    desktop.eventTaps.refusesListenOnly = true;
    addShortcut("Editor", 0, command);
    manager().start();
    EXPECT_EQ(tapsMade(), 2);
    EXPECT_THAT(manager().eventTap(), IsNull());
    EXPECT_THAT(manager().runLoopSource(), IsNull());
    EXPECT_EQ(map().size(), 1);
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
    EXPECT_EQ(prompts(), 0);
    EXPECT_EQ(desktop.standardOutput.str(), "");
}

TEST_F(HotkeyManagerTest, AnotherStartAfterARefusalTriesAgain) {
    desktop.eventTaps.refusesActive = true;
    desktop.eventTaps.refusesListenOnly = true;
    manager().start();
    desktop.eventTaps.refusesActive = false;
    manager().start();
    EXPECT_THAT(manager().eventTap(), NotNull());
}

TEST_F(HotkeyManagerTest, UntrustedStartPromptsAtOnceAndBuildsNothing) {
    desktop.accessibilityTrust.trusted = false;
    addShortcut("Editor", 0, command);
    manager().start();
    EXPECT_THAT(desktop.log.calls(), ElementsAre("accessibilityTrust.isProcessTrusted",
                                                 "accessibilityTrust.isProcessTrustedWithPrompt"));
    EXPECT_THAT(map(), IsEmpty());
    EXPECT_THAT(manager().eventTap(), IsNull());
    EXPECT_EQ(desktop.mainQueue.pending(), 1);
}

TEST_F(HotkeyManagerTest, UntrustedStartPromptsAgainEveryFiveSecondsWithoutEnd) {
    desktop.accessibilityTrust.trusted = false;
    manager().start();
    desktop.mainQueue.advance(4999ms);
    EXPECT_EQ(prompts(), 1);
    desktop.mainQueue.advance(1ms);
    EXPECT_EQ(prompts(), 2);
    desktop.mainQueue.advance(1h);
    EXPECT_EQ(prompts(), 2 + 720);
    EXPECT_EQ(tapsMade(), 0);
    EXPECT_EQ(desktop.standardOutput.str(), "");
}

TEST_F(HotkeyManagerTest, PermissionGrantedWhileWaitingIsSeenByTheNextRetry) {
    desktop.accessibilityTrust.trusted = false;
    manager().start();
    desktop.mainQueue.advance(5s);
    desktop.accessibilityTrust.trusted = true;
    addShortcut("Editor", 0, command);
    desktop.mainQueue.advance(4999ms);
    EXPECT_THAT(manager().eventTap(), IsNull());
    desktop.mainQueue.advance(1ms);
    EXPECT_THAT(manager().eventTap(), NotNull());
    EXPECT_EQ(map().size(), 1);
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
    EXPECT_EQ(prompts(), 2);
}

TEST_F(HotkeyManagerTest, TwoUntrustedStartsGiveTwoRetryChains) {
    desktop.accessibilityTrust.trusted = false;
    manager().start();
    desktop.mainQueue.advance(2s);
    manager().start();
    EXPECT_EQ(prompts(), 2);
    EXPECT_EQ(desktop.mainQueue.pending(), 2);
    desktop.mainQueue.advance(3s);
    EXPECT_EQ(prompts(), 3);
    desktop.mainQueue.advance(2s);
    EXPECT_EQ(prompts(), 4);
    EXPECT_EQ(desktop.mainQueue.pending(), 2);
}

TEST_F(HotkeyManagerTest, TwoRetryChainsInstallOneTap) {
    desktop.accessibilityTrust.trusted = false;
    manager().start();
    manager().start();
    desktop.accessibilityTrust.trusted = true;
    desktop.mainQueue.advance(5s);
    EXPECT_EQ(tapsMade(), 1);
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
}

TEST_F(HotkeyManagerTest, ManagerGoneBeforeTheRetryIsLeftAlone) {
    desktop.accessibilityTrust.trusted = false;
    manager().start();
    platform::SharedInstance<HotkeyManager>::resetForTesting();
    desktop.log.clear();
    desktop.mainQueue.advance(5s);
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
    EXPECT_EQ(desktop.mainQueue.pending(), 0);
}

TEST_F(HotkeyManagerTest, StopTearsTheTapDownInOrder) {
    addShortcut("Editor", 0, command);
    manager().start();
    desktop.log.clear();
    manager().stop();
    EXPECT_THAT(desktop.log.calls(),
                ElementsAre("eventTap.enable false", "runLoopSource.removeFromMainRunLoop",
                            "eventTap.invalidate"));
    EXPECT_THAT(manager().eventTap(), IsNull());
    EXPECT_THAT(manager().runLoopSource(), IsNull());
    EXPECT_THAT(desktop.eventTaps.tap(), IsNull());
    EXPECT_THAT(map(), IsEmpty());
}

TEST_F(HotkeyManagerTest, StopWithoutATapEmptiesTheMap) {
    addShortcut("Editor", 0, command);
    manager().buildShortcutMap();
    manager().stop();
    EXPECT_THAT(map(), IsEmpty());
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(HotkeyManagerTest, StoppingTwiceIsTheSameAsOnce) {
    manager().start();
    manager().stop();
    desktop.log.clear();
    manager().stop();
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

TEST_F(HotkeyManagerTest, LateChangeAfterStopFillsTheMapButBringsNoTap) {
    const auto subscription = desktop.notificationCenter.observe(
        shortcutsDidChange, [] { HotkeyManager::shared().buildShortcutMap(); });
    manager().start();
    manager().stop();
    desktop.log.clear();
    addShortcut("Editor", 0, command);
    EXPECT_EQ(map().size(), 1);
    EXPECT_THAT(manager().eventTap(), IsNull());
    EXPECT_THAT(desktop.log.calls(), IsEmpty());
}

} // namespace

} // namespace hollowfernpike
