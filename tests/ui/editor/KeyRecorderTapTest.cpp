#include "ui/editor/KeyRecorderTest.h"

#include <QEvent>

#include <gmock/gmock.h>

#include <memory>

namespace hollowfernpike {

namespace {

using platform::eventTapDisabledByTimeout;
using platform::eventTapDisabledByUserInput;
using platform::eventTapFocusLost;
using platform::EventTapOptions;
using platform::KeyEvent;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using namespace test;

/// Writes what happens to a window and a view in it into the log of calls.
class WindowWatch final : public QObject {
public:
    WindowWatch(CallLog& log, QWidget& window, QWidget& view)
        : log_(log), window_(window), view_(view) {
        window.installEventFilter(this);
        view.installEventFilter(this);
    }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == &window_ && event->type() == QEvent::ZOrderChange) {
            log_.record("window.raise");
        } else if (watched == &view_ && event->type() == QEvent::FocusIn) {
            log_.record("view.focus");
        }
        return false;
    }

    CallLog& log_;
    QWidget& window_;
    QWidget& view_;
};

using KeyRecorderTapTest = KeyRecorderTest;

TEST_F(KeyRecorderTapTest, StartsInThisOrder) {
    view_->toggleRecording();
    EXPECT_THAT(calls(), ElementsAre("application.setActivationPolicy regular",
                                     "application.activateIgnoringOtherApps",
                                     "accessibilityTrust.isProcessTrusted",
                                     "eventTaps.create listenOnly", "eventTap.createRunLoopSource",
                                     "runLoopSource.addToMainRunLoop", "eventTap.enable true"));
    EXPECT_EQ(tap().userInfo(), view_.get());
    EXPECT_EQ(view_->eventTap(), &tap());
}

TEST_F(KeyRecorderTapTest, BringsItsWindowForwardBetweenActivatingAndListening) {
    QWidget window;
    QPushButton other(&window);
    view_->setParent(&window);
    window.show();
    activate(window);
    other.setFocus();
    const WindowWatch watch(services_.log, window, *view_);
    services_.log.clear();

    view_->toggleRecording();
    EXPECT_THAT(calls(), ElementsAre("application.setActivationPolicy regular",
                                     "application.activateIgnoringOtherApps", "window.raise",
                                     "view.focus", "accessibilityTrust.isProcessTrusted",
                                     "eventTaps.create listenOnly", "eventTap.createRunLoopSource",
                                     "runLoopSource.addToMainRunLoop", "eventTap.enable true"));
    view_->setParent(nullptr);
}

TEST_F(KeyRecorderTapTest, StopsInThisOrder) {
    view_->toggleRecording();
    services_.log.clear();
    view_->stopRecording();
    EXPECT_THAT(calls(),
                ElementsAre("eventTap.enable false", "runLoopSource.removeFromMainRunLoop",
                            "eventTap.invalidate", "application.setActivationPolicy accessory"));
    EXPECT_EQ(view_->eventTap(), nullptr);
    EXPECT_EQ(services_.eventTaps.tap(), nullptr);
}

TEST_F(KeyRecorderTapTest, StaysRegularWhileAWindowIsVisible) {
    services_.application.openWindows = {{.isVisible = false, .className = "QWidget"},
                                         {.isVisible = true, .className = "StatusBarWindow"},
                                         {.isVisible = true, .className = "QWidget"}};
    view_->toggleRecording();
    view_->stopRecording();
    EXPECT_THAT(calls(), Not(Contains("application.setActivationPolicy accessory")));
}

TEST_F(KeyRecorderTapTest, NeitherHiddenWindowsNorThoseOfTheStatusItemKeepItRegular) {
    services_.application.openWindows = {{.isVisible = false, .className = "QWidget"},
                                         {.isVisible = true, .className = "NSStatusBarWindow"}};
    view_->toggleRecording();
    view_->stopRecording();
    EXPECT_EQ(calls().back(), "application.setActivationPolicy accessory");
}

TEST_F(KeyRecorderTapTest, ARefusedTapLeavesItIdleAndTheApplicationRegular) {
    services_.eventTaps.refusesListenOnly = true;
    view_->toggleRecording();
    EXPECT_FALSE(view_->isRecording());
    EXPECT_EQ(view_->eventTap(), nullptr);
    EXPECT_THAT(calls(),
                ElementsAre("application.setActivationPolicy regular",
                            "application.activateIgnoringOtherApps",
                            "accessibilityTrust.isProcessTrusted", "eventTaps.create listenOnly"));
    EXPECT_EQ(view_.use_count(), 1);
}

TEST_F(KeyRecorderTapTest, CanBeStartedAgainAfterARefusedTap) {
    services_.eventTaps.refusesListenOnly = true;
    view_->toggleRecording();
    services_.eventTaps.refusesListenOnly = false;
    view_->toggleRecording();
    EXPECT_TRUE(view_->isRecording());
    strike(keyA, command);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
}

TEST_F(KeyRecorderTapTest, WithoutTrustItAsksForItMakesNoTapAndLeavesTheApplicationRegular) {
    services_.accessibilityTrust.trusted = false;
    view_->toggleRecording();
    EXPECT_FALSE(view_->isRecording());
    EXPECT_EQ(view_->eventTap(), nullptr);
    EXPECT_THAT(calls(), ElementsAre("application.setActivationPolicy regular",
                                     "application.activateIgnoringOtherApps",
                                     "accessibilityTrust.isProcessTrusted",
                                     "accessibilityTrust.isProcessTrustedWithPrompt"));
}

TEST_F(KeyRecorderTapTest, AKnownCombinationOutlivesARecordingThatCannotStart) {
    view_->setShortcut(keyB, command);
    services_.accessibilityTrust.trusted = false;
    view_->toggleRecording();
    services_.accessibilityTrust.trusted = true;
    services_.eventTaps.refusesListenOnly = true;
    view_->toggleRecording();
    EXPECT_EQ(view_->capturedKeyCode(), keyB);
    EXPECT_EQ(view_->capturedModifierFlags(), command);
    EXPECT_THAT(recorded_, IsEmpty());
}

TEST_F(KeyRecorderTapTest, HandsEveryEventBackAsItIs) {
    view_->toggleRecording();
    EXPECT_EQ(tap().options(), EventTapOptions::listenOnly);
    const KeyEvent event{.keyCode = keyA, .flags = command};
    constexpr platform::EventType keyUp = 11;
    for (const auto type : {platform::eventKeyDown, keyUp, eventTapDisabledByTimeout}) {
        EXPECT_EQ(tap().deliver(type, &event), &event);
    }
}

TEST_F(KeyRecorderTapTest, HandlesKeysOnceTheTapIsDoneWithThem) {
    view_->toggleRecording();
    tap().press(keyA, command);
    EXPECT_THAT(recorded_, IsEmpty());
    EXPECT_TRUE(view_->isRecording());
    services_.mainQueue.runDue();
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
}

TEST_F(KeyRecorderTapTest, AKeyThatWasAlreadyOnItsWayIsRecordedToo) {
    view_->toggleRecording();
    tap().press(keyA, command);
    tap().press(keyB, command);
    services_.mainQueue.runDue();
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command), Pair(keyB, command)));
    EXPECT_EQ(view_->capturedKeyCode(), keyB);
    EXPECT_EQ(find<FittingLabel>(*view_, "displayLabel").text(), "⌘B");
}

TEST_F(KeyRecorderTapTest, AKeyAloneThatWasAlreadyOnItsWayAsksForAModifierThoughItIsIdle) {
    view_->toggleRecording();
    tap().press(keyA, command);
    tap().press(keyB, 0);
    services_.mainQueue.runDue();
    EXPECT_EQ(label(), "修飾キー(⌃⌥⇧⌘)を含めてください");
    EXPECT_FALSE(view_->isRecording());
    EXPECT_EQ(view_->capturedKeyCode(), keyA);
    EXPECT_EQ(view_->capturedModifierFlags(), command);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
}

TEST_F(KeyRecorderTapTest, EscapeThatWasAlreadyOnItsWayChangesNothing) {
    view_->toggleRecording();
    tap().press(keyA, command);
    services_.mainQueue.async([this] { services_.log.clear(); });
    tap().press(keyEscape, 0);
    services_.mainQueue.runDue();
    EXPECT_EQ(label(), "⌘A");
    EXPECT_EQ(button().text(), "記録");
    EXPECT_EQ(view_->capturedKeyCode(), keyA);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(KeyRecorderTapTest, EndsWhenTheKeysGoToOthers) {
    view_->toggleRecording();
    tap().deliver(eventTapFocusLost, nullptr);
    services_.mainQueue.runDue();
    EXPECT_FALSE(view_->isRecording());
    EXPECT_EQ(services_.eventTaps.tap(), nullptr);
    EXPECT_EQ(label(), "クリックして記録");
    EXPECT_EQ(button().text(), "記録");
}

// As a combination that is bound does: its application comes to the front.
TEST_F(KeyRecorderTapTest, APressThatSendsTheKeysToOthersIsTaken) {
    view_->toggleRecording();
    tap().press(keyA, shift);
    tap().deliver(eventTapFocusLost, nullptr);
    services_.mainQueue.runDue();
    EXPECT_FALSE(view_->isRecording());
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, shift)));
    EXPECT_EQ(label(), "⇧A");
}

TEST_F(KeyRecorderTapTest, APressAfterTheKeysHaveGoneToOthersIsNotTaken) {
    view_->toggleRecording();
    tap().deliver(eventTapFocusLost, nullptr);
    tap().press(keyA, shift);
    services_.mainQueue.runDue();
    EXPECT_THAT(recorded_, IsEmpty());
    EXPECT_FALSE(view_->capturedKeyCode());
    view_->toggleRecording();
    strike(keyB, command);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyB, command)));
}

TEST_F(KeyRecorderTapTest, EndsWhenItIsHidden) {
    QWidget window;
    view_->setParent(&window);
    window.show();
    view_->toggleRecording();
    tap().press(keyA, shift);
    window.hide();
    EXPECT_FALSE(view_->isRecording());
    services_.mainQueue.runDue();
    EXPECT_THAT(recorded_, IsEmpty());
    view_->setParent(nullptr);
}

TEST_F(KeyRecorderTapTest, EndsWhenAnotherOfOurWindowsIsActive) {
    QWidget window;
    QWidget another;
    view_->setParent(&window);
    another.show();
    window.show();
    activate(window);
    view_->toggleRecording();
    turn();
    ASSERT_TRUE(view_->isRecording());
    activate(another);
    EXPECT_TRUE(eventually([&] { return !view_->isRecording(); }));
    view_->setParent(nullptr);
}

TEST_F(KeyRecorderTapTest, IgnoresOtherEvents) {
    view_->toggleRecording();
    const KeyEvent event{.keyCode = keyA, .flags = command};
    tap().deliver(11, &event);
    tap().deliver(12, &event);
    EXPECT_EQ(services_.mainQueue.pending(), 0U);
}

TEST_F(KeyRecorderTapTest, EventsForNobodyPass) {
    const KeyEvent event{.keyCode = keyA, .flags = command};
    for (const auto type : {platform::eventKeyDown, eventTapDisabledByUserInput}) {
        EXPECT_EQ(keyRecorderEventTapCallback(nullptr, type, &event, nullptr), &event);
    }
    EXPECT_EQ(services_.mainQueue.pending(), 0U);
}

TEST_F(KeyRecorderTapTest, EnablesATapThatWasDisabledByATimeout) {
    view_->toggleRecording();
    tap().disableFromOutside(eventTapDisabledByTimeout);
    EXPECT_TRUE(tap().isEnabled());
    strike(keyA, command);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
}

TEST_F(KeyRecorderTapTest, EnablesATapThatWasDisabledByUserInput) {
    view_->toggleRecording();
    tap().disableFromOutside(eventTapDisabledByUserInput);
    EXPECT_TRUE(tap().isEnabled());
}

TEST_F(KeyRecorderTapTest, ThereMayBeNoTapToEnable) {
    EXPECT_EQ(keyRecorderEventTapCallback(nullptr, eventTapDisabledByTimeout, nullptr, view_.get()),
              nullptr);
    EXPECT_THAT(calls(), IsEmpty());
}

using KeyRecorderTapDeathTest = KeyRecorderTapTest;

TEST_F(KeyRecorderTapDeathTest, AKeyCodeOutOfRangeIsFatal) {
    view_->toggleRecording();
    EXPECT_DEATH(tap().press(65536, command), "key code 65536");
    EXPECT_DEATH(tap().press(-1, command), "key code -1");
}

TEST_F(KeyRecorderTapTest, TheLargestKeyCodeIsRecorded) {
    view_->toggleRecording();
    strike(65535, command);
    EXPECT_THAT(recorded_, ElementsAre(Pair(65535, command)));
}

TEST_F(KeyRecorderTapTest, TheTapKeepsTheViewAlive) {
    view_->toggleRecording();
    KeyRecorderView* const view = view_.get();
    const std::weak_ptr<KeyRecorderView> weak = std::exchange(view_, nullptr);
    EXPECT_FALSE(weak.expired());
    view->stopRecording();
    EXPECT_TRUE(weak.expired());
}

TEST_F(KeyRecorderTapTest, AKeyOnItsWayKeepsTheViewAlive) {
    view_->toggleRecording();
    tap().press(keyA, command);
    view_->stopRecording();
    const std::weak_ptr<KeyRecorderView> weak = std::exchange(view_, nullptr);
    EXPECT_FALSE(weak.expired());
    services_.mainQueue.runDue();
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
    EXPECT_TRUE(weak.expired());
}

TEST_F(KeyRecorderTapTest, AnIdleViewIsHeldByNobody) {
    const std::weak_ptr<KeyRecorderView> weak = std::exchange(view_, nullptr);
    EXPECT_TRUE(weak.expired());
}

TEST_F(KeyRecorderTapTest, GivesTheKeyboardBackWhenTheProgramEnds) {
    view_->toggleRecording();
    const std::weak_ptr<KeyRecorderView> weak = std::exchange(view_, nullptr);
    QMetaObject::invokeMethod(qApp, "aboutToQuit");
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(services_.eventTaps.tap(), nullptr);
}

} // namespace
} // namespace hollowfernpike
