#include "ui/Colors.h"
#include "ui/Corners.h"
#include "ui/editor/KeyRecorderTest.h"
#include "ui/parts/SystemColors.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <gmock/gmock.h>

#include <chrono>

namespace hollowfernpike {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using namespace test;

class KeyRecorderViewTest : public KeyRecorderTest {
protected:
    /// The colour of the border's outermost point, as it is painted.
    QColor edgeColor() {
        const QImage image = view_->grab().toImage();
        return image.pixelColor(0, image.height() / 2);
    }

    QColor innerEdgeColor() {
        const QImage image = view_->grab().toImage();
        return image.pixelColor(1, image.height() / 2);
    }

    QColor plainColor() { return view_->palette().color(QPalette::Window); }

    QColor separator() { return laidOver(separatorColor(view_->palette()), plainColor()); }

    /// How wide the border is, seen from the left in the middle of the view.
    int borderWidth() {
        const QImage image = view_->grab().toImage();
        int width = 0;
        while (image.pixelColor(width, image.height() / 2) != plainColor()) {
            ++width;
        }
        return width;
    }

    void expectIdleBorder() {
        expectSameColor(edgeColor(), separator());
        EXPECT_EQ(borderWidth(), 1);
    }

    static void expectSameColor(const QColor& one, const QColor& other) {
        EXPECT_NEAR(one.red(), other.red(), 1);
        EXPECT_NEAR(one.green(), other.green(), 1);
        EXPECT_NEAR(one.blue(), other.blue(), 1);
    }

    static void expectNoDialog() {
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            EXPECT_EQ(qobject_cast<const QDialog*>(window), nullptr);
        }
    }
};

TEST_F(KeyRecorderViewTest, AtFirstKnowsNoCombinationAndAsksForAClick) {
    EXPECT_FALSE(view_->isRecording());
    EXPECT_FALSE(view_->capturedKeyCode());
    EXPECT_FALSE(view_->capturedModifierFlags());
    EXPECT_EQ(view_->eventTap(), nullptr);
    EXPECT_EQ(label(), "クリックして記録");
    EXPECT_EQ(button().text(), "記録");
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(KeyRecorderViewTest, AcceptsTheFocus) {
    EXPECT_NE(view_->focusPolicy(), Qt::NoFocus);
}

TEST_F(KeyRecorderViewTest, RecordsACombination) {
    button().click();
    EXPECT_TRUE(view_->isRecording());
    strike(keyA, command);
    EXPECT_EQ(view_->capturedKeyCode(), keyA);
    EXPECT_EQ(view_->capturedModifierFlags(), command);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
    EXPECT_EQ(label(), "⌘A");
    EXPECT_EQ(button().text(), "記録");
    EXPECT_FALSE(view_->isRecording());
}

TEST_F(KeyRecorderViewTest, AKeyAloneAsksForAModifierAndRecordingGoesOn) {
    button().click();
    strike(keyA, 0);
    EXPECT_EQ(label(), "修飾キー(⌃⌥⇧⌘)を含めてください");
    EXPECT_EQ(button().text(), "停止");
    EXPECT_TRUE(view_->isRecording());
    EXPECT_THAT(recorded_, IsEmpty());
    strike(keyA, command);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
}

TEST_F(KeyRecorderViewTest, CapsLockAndFunctionBitsAreNotRecorded) {
    button().click();
    strike(keyA, command | 0x10000 | 0x800000 | 0x200000 | 0x400000 | 0x100);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, command)));
    EXPECT_EQ(view_->capturedModifierFlags(), command);
}

TEST_F(KeyRecorderViewTest, CapsLockAloneIsNoModifier) {
    button().click();
    strike(keyA, 0x10000);
    EXPECT_TRUE(view_->isRecording());
    EXPECT_THAT(recorded_, IsEmpty());
}

TEST_F(KeyRecorderViewTest, ShiftAloneIsAModifier) {
    button().click();
    strike(keyA, shift);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, shift)));
    EXPECT_EQ(label(), "⇧A");
}

TEST_F(KeyRecorderViewTest, AllFourModifiersAreRecordedTogether) {
    button().click();
    strike(keyA, 0x1E0000);
    EXPECT_THAT(recorded_, ElementsAre(Pair(keyA, 0x1E0000U)));
    EXPECT_EQ(label(), "⌃⌥⇧⌘A");
}

TEST_F(KeyRecorderViewTest, EscapeEndsTheRecordingAndTheLabelIsAsBefore) {
    button().click();
    strike(keyEscape, 0);
    EXPECT_FALSE(view_->isRecording());
    EXPECT_FALSE(view_->capturedKeyCode());
    EXPECT_EQ(label(), "クリックして記録");
    EXPECT_THAT(recorded_, IsEmpty());
}

TEST_F(KeyRecorderViewTest, EscapeWithModifiersEndsTheRecordingToo) {
    button().click();
    strike(keyEscape, command | shift);
    EXPECT_FALSE(view_->isRecording());
    EXPECT_FALSE(view_->capturedKeyCode());
    EXPECT_THAT(recorded_, IsEmpty());
}

TEST_F(KeyRecorderViewTest, EscapeKeepsAKnownCombinationAndThePrompt) {
    view_->setShortcut(keyB, command);
    button().click();
    strike(keyEscape, 0);
    EXPECT_FALSE(view_->isRecording());
    EXPECT_EQ(view_->capturedKeyCode(), keyB);
    EXPECT_EQ(view_->capturedModifierFlags(), command);
    EXPECT_EQ(label(), "キーを入力してください...");
    EXPECT_EQ(button().text(), "記録");
}

TEST_F(KeyRecorderViewTest, EscapeAfterAKeyAloneKeepsTheModifierMessageOfAKnownCombination) {
    view_->setShortcut(keyB, command);
    button().click();
    strike(keyA, 0);
    strike(keyEscape, 0);
    EXPECT_EQ(label(), "修飾キー(⌃⌥⇧⌘)を含めてください");
}

TEST_F(KeyRecorderViewTest, TheStopButtonEndsTheRecordingAndKeepsThePromptOfAKnownCombination) {
    view_->setShortcut(keyB, command);
    button().click();
    EXPECT_EQ(button().text(), "停止");
    button().click();
    EXPECT_FALSE(view_->isRecording());
    EXPECT_EQ(label(), "キーを入力してください...");
}

TEST_F(KeyRecorderViewTest, StoppingWithoutRecordingDoesNothing) {
    view_->setShortcut(keyB, command);
    view_->stopRecording();
    EXPECT_EQ(label(), "⌘B");
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(KeyRecorderViewTest, AHandedInCombinationIsKeptUnmaskedAndReportedToNobody) {
    constexpr std::uint64_t flags = command | 0x10000 | 0x100;
    view_->setShortcut(keyA, flags);
    EXPECT_EQ(view_->capturedKeyCode(), keyA);
    EXPECT_EQ(view_->capturedModifierFlags(), flags);
    EXPECT_EQ(label(), "⌘A");
    EXPECT_FALSE(view_->isRecording());
    EXPECT_THAT(recorded_, IsEmpty());
}

TEST_F(KeyRecorderViewTest, AHandedInCombinationLeavesARecordingAlone) {
    button().click();
    view_->setShortcut(keyB, command);
    EXPECT_TRUE(view_->isRecording());
    EXPECT_EQ(button().text(), "停止");
}

TEST_F(KeyRecorderViewTest, RecordsWithoutAnybodyToTell) {
    view_->onKeyRecorded = nullptr;
    button().click();
    strike(keyA, command);
    EXPECT_EQ(view_->capturedKeyCode(), keyA);
}

TEST_F(KeyRecorderViewTest, TheRecordingHasEndedWhenTheCombinationIsReported) {
    bool wasRecording = true;
    view_->onKeyRecorded = [&](std::uint16_t, std::uint64_t) {
        wasRecording = view_->isRecording();
    };
    button().click();
    strike(keyA, command);
    EXPECT_FALSE(wasRecording);
}

TEST_F(KeyRecorderViewTest, KeepsTheLanguageInWhichATextWasBuilt) {
    speak(Language::english);
    EXPECT_EQ(label(), "クリックして記録");
    button().click();
    EXPECT_EQ(label(), "Press a key...");
    EXPECT_EQ(button().text(), "Stop");
}

TEST_F(KeyRecorderViewTest, TheBorderIsASeparatorWhileIdle) {
    expectIdleBorder();
}

TEST_F(KeyRecorderViewTest, TheBorderIsTwiceAsWideInTheAccentColourWhileRecording) {
    button().click();
    EXPECT_EQ(edgeColor(), view_->palette().color(QPalette::Highlight));
    EXPECT_EQ(innerEdgeColor(), view_->palette().color(QPalette::Highlight));
    EXPECT_EQ(borderWidth(), 2);
    button().click();
    expectIdleBorder();
}

TEST_F(KeyRecorderViewTest, TheAccentColourStaysWhileAnotherWindowIsInFront) {
    QPalette palette = view_->palette();
    palette.setColor(QPalette::Active, QPalette::Highlight, QColor(48, 140, 198));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(160, 160, 160));
    view_->setPalette(palette);
    QWidget other;
    view_->show();
    other.show();
    activate(other);
    view_->toggleRecording();
    activate(other);
    ASSERT_FALSE(view_->isActiveWindow());
    EXPECT_EQ(edgeColor(), QColor(48, 140, 198));
}

TEST_F(KeyRecorderViewTest, TheBordersOuterEdgeIsRoundWithARadiusOfSixWhateverItsWidth) {
    expectCorners(*view_, 6);
    button().click();
    expectCorners(*view_, 6);
}

TEST_F(KeyRecorderViewTest, ARefusedTapLeavesAnIdleBorderAndNoDialog) {
    services_.eventTaps.refusesListenOnly = true;
    button().click();
    turn();
    expectIdleBorder();
    expectNoDialog();
    EXPECT_TRUE(button().isEnabled());
}

TEST_F(KeyRecorderViewTest, MissingTrustLeavesAnIdleBorderAndNoDialog) {
    services_.accessibilityTrust.trusted = false;
    button().click();
    turn();
    expectIdleBorder();
    expectNoDialog();
    EXPECT_TRUE(button().isEnabled());
}

TEST_F(KeyRecorderViewTest, MessagesStayHoweverLongNobodyDoesAnything) {
    const auto expectToStay = [this] {
        const QString message = label();
        EXPECT_EQ(services_.mainQueue.pending(), 0U);
        EXPECT_THAT(view_->findChildren<QTimer*>(), IsEmpty());
        services_.mainQueue.advance(std::chrono::hours(24));
        EXPECT_EQ(label(), message);
    };
    button().click();
    strike(keyA, 0);
    expectToStay();
    EXPECT_TRUE(view_->isRecording());
    view_->stopRecording();
    services_.eventTaps.refusesListenOnly = true;
    button().click();
    expectToStay();
    services_.accessibilityTrust.trusted = false;
    button().click();
    expectToStay();
}

TEST_F(KeyRecorderViewTest, KeepsAllItsTextsWhenTheLanguageChanges) {
    for (const bool records : {false, true}) {
        speak(Language::japanese);
        view_ = KeyRecorderView::make();
        if (records) {
            button().click();
        }
        const QStringList before{label(), button().text(), view_->accessibleDescription()};
        speak(Language::english);
        services_.notificationCenter.post("languageDidChange");
        turn();
        EXPECT_EQ((QStringList{label(), button().text(), view_->accessibleDescription()}), before);
        view_->stopRecording();
    }
}

TEST_F(KeyRecorderViewTest, ARingShowsTheFocusInsideOfTheBorder) {
    const auto ringColor = [this] {
        const QImage image = view_->grab().toImage();
        return image.pixelColor(3, image.height() / 2);
    };
    const QColor accent = view_->palette().color(QPalette::Highlight);
    const QColor border = edgeColor();
    EXPECT_NE(ringColor(), accent);
    view_->show();
    activate(*view_);
    view_->setFocus();
    ASSERT_TRUE(view_->hasFocus());
    EXPECT_EQ(ringColor(), accent);
    EXPECT_EQ(edgeColor(), border);
}

TEST_F(KeyRecorderViewTest, TellsAssistiveTechnologyWhatItShows) {
    EXPECT_EQ(view_->accessibleName(), "ショートカットキー");
    EXPECT_EQ(view_->accessibleDescription(), "クリックして記録");
    view_->setShortcut(keyA, command);
    EXPECT_EQ(view_->accessibleDescription(), "⌘A");
}

using KeyRecorderTexts = KeyRecorderInEachLanguage;

TEST_P(KeyRecorderTexts, Idle) {
    EXPECT_EQ(label(), inLanguage("クリックして記録", "Click to record"));
    EXPECT_EQ(button().text(), inLanguage("記録", "Record"));
}

TEST_P(KeyRecorderTexts, Recording) {
    button().click();
    EXPECT_EQ(label(), inLanguage("キーを入力してください...", "Press a key..."));
    EXPECT_EQ(button().text(), inLanguage("停止", "Stop"));
}

TEST_P(KeyRecorderTexts, AModifierIsMissing) {
    button().click();
    strike(keyA, 0);
    EXPECT_EQ(label(),
              inLanguage("修飾キー(⌃⌥⇧⌘)を含めてください", "Include a modifier key (⌃⌥⇧⌘)."));
}

TEST_P(KeyRecorderTexts, TheTapIsRefused) {
    services_.eventTaps.refusesListenOnly = true;
    button().click();
    EXPECT_EQ(label(), inLanguage("キーキャプチャの初期化に失敗しました",
                                  "Failed to initialize key capture."));
    EXPECT_EQ(button().text(), inLanguage("記録", "Record"));
}

TEST_P(KeyRecorderTexts, TheProcessIsNotTrusted) {
    services_.accessibilityTrust.trusted = false;
    button().click();
    EXPECT_EQ(label(), inLanguage("アクセシビリティ権限を許可後、再度「記録」を押してください",
                                  "Grant accessibility permission, then press \"Record\" again."));
    EXPECT_EQ(button().text(), inLanguage("記録", "Record"));
}

INSTANTIATE_TEST_SUITE_P(, KeyRecorderTexts, testing::Values(Language::japanese, Language::english),
                         languageName);

} // namespace
} // namespace hollowfernpike
