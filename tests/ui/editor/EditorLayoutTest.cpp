#include "ui/editor/EditorSheetTest.h"
#include "ui/icons/IconView.h"

#include <gtest/gtest.h>

namespace hollowfernpike {

namespace {

using namespace test;

int endOf(const QRect& rect) {
    return rect.x() + rect.width();
}

int bottomOf(const QRect& rect) {
    return rect.y() + rect.height();
}

/// Centres may be half a point apart: an even and an odd height cannot share one.
void expectSameCentre(const QRect& one, const QRect& other) {
    EXPECT_LE(std::abs((2 * one.y() + one.height()) - (2 * other.y() + other.height())), 1);
}

class EditorLayoutTest : public WithEditorSheet<EditorInEachLanguage> {
protected:
    /// In the window's coordinates.
    QRect frame(const char* name) {
        const auto sheet = sheet_.lock();
        auto& view = find<QWidget>(*sheet, name);
        return {view.mapTo(sheet.get(), QPoint()), view.size()};
    }

    QRect recorderFrame() {
        const auto sheet = sheet_.lock();
        return {sheet->keyRecorder().mapTo(sheet.get(), QPoint()), sheet->keyRecorder().size()};
    }

    void openWithName(const std::string& name) {
        AppShortcut shortcut = mailShortcut();
        shortcut.appName = name;
        open(shortcut);
    }

    void expectStep1(const QSize& window) {
        EXPECT_EQ(frame("step1Heading").topLeft(), QPoint(20, 20));
        EXPECT_EQ(frame("selectButton").topLeft(),
                  QPoint(20, bottomOf(frame("step1Heading")) + 16));
        EXPECT_GE(frame("selectButton").height(), 30);
        EXPECT_EQ(frame("step1AppIconView").size(), QSize(32, 32));
        EXPECT_EQ(frame("step1AppIconView").x(), endOf(frame("selectButton")) + 12);
        expectSameCentre(frame("step1AppIconView"), frame("selectButton"));
        EXPECT_EQ(frame("step1AppNameLabel").x(), endOf(frame("step1AppIconView")) + 8);
        EXPECT_LE(endOf(frame("step1AppNameLabel")), window.width() - 20);
        expectSameCentre(frame("step1AppNameLabel"), frame("step1AppIconView"));
    }

    void expectStep2(const QSize& window) {
        EXPECT_EQ(frame("step2Container").y(), bottomOf(frame("selectButton")) + 20);
        EXPECT_EQ(frame("step2Container").x(), 0);
        EXPECT_EQ(frame("step2Container").width(), window.width());
        EXPECT_EQ(frame("step2Heading").topLeft(), QPoint(20, frame("step2Container").y()));
        EXPECT_EQ(recorderFrame(), QRect(20, bottomOf(frame("step2Heading")) + 12, 360, 36));
        EXPECT_EQ(bottomOf(recorderFrame()), bottomOf(frame("step2Container")));
        EXPECT_GE(frame("saveButton").y(), bottomOf(frame("step2Container")) + 20);
    }

    void expectButtons(const QSize& window) {
        EXPECT_EQ(bottomOf(frame("saveButton")), window.height() - 16);
        EXPECT_EQ(endOf(frame("saveButton")), window.width() - 20);
        EXPECT_EQ(bottomOf(frame("cancelButton")), window.height() - 16);
        EXPECT_EQ(endOf(frame("cancelButton")), frame("saveButton").x() - 8);
    }

    void expectWholeText(const char* name) {
        const auto sheet = sheet_.lock();
        auto& view = find<QWidget>(*sheet, name);
        EXPECT_GE(view.width(), view.sizeHint().width()) << name;
        EXPECT_GE(view.height(), view.sizeHint().height()) << name;
    }
};

TEST_P(EditorLayoutTest, Adding) {
    const auto& sheet = open();
    expectStep1(sheet.size());
    expectButtons(sheet.size());
    EXPECT_FALSE(frame("saveButton").intersects(frame("selectButton")));
}

TEST_P(EditorLayoutTest, Editing) {
    const auto& sheet = open(mailShortcut());
    expectStep1(sheet.size());
    expectStep2(sheet.size());
    expectButtons(sheet.size());
}

TEST_P(EditorLayoutTest, AfterGrowing) {
    auto& sheet = open();
    choose(sheet, "/Applications/Example.app");
    expectStep1(sheet.size());
    expectStep2(sheet.size());
    expectButtons(sheet.size());
}

TEST_P(EditorLayoutTest, TextsOfOursAreWhole) {
    open(mailShortcut());
    for (const char* name : {"step1Heading", "selectButton", "step1AppNameLabel", "step2Heading",
                             "cancelButton", "saveButton", "displayLabel", "recordButton"}) {
        expectWholeText(name);
    }
}

TEST_P(EditorLayoutTest, LabelsHaveTheirSizesAndWeights) {
    const auto& sheet = open(mailShortcut());
    struct Face {
        const char* label;
        int size;
        QFont::Weight weight;
    };
    for (const auto& [name, size, weight] :
         {Face{"step1Heading", 15, QFont::DemiBold}, Face{"step1AppNameLabel", 14, QFont::Medium},
          Face{"step2Heading", 15, QFont::DemiBold}, Face{"displayLabel", 14, QFont::Medium}}) {
        const QFont font = find<FittingLabel>(sheet, name).font();
        EXPECT_EQ(font.pixelSize(), size) << name;
        EXPECT_EQ(font.weight(), weight) << name;
        EXPECT_EQ(font.family(), QApplication::font().family()) << name;
    }
}

TEST_P(EditorLayoutTest, LabelsAreInTheColourOfTextAndOnlyTheRecordersIsCentred) {
    const auto& sheet = open(mailShortcut());
    for (const auto* label : sheet.findChildren<QLabel*>()) {
        const bool isRecorders = label->objectName() == "displayLabel";
        EXPECT_EQ(label->palette().color(label->foregroundRole()),
                  QApplication::palette().color(QPalette::WindowText));
        EXPECT_EQ(label->alignment() & Qt::AlignHorizontal_Mask,
                  isRecorders ? Qt::AlignHCenter : Qt::AlignLeft)
            << label->objectName().toStdString();
    }
}

TEST_P(EditorLayoutTest, AShortNameTakesNoMoreThanItNeeds) {
    openWithName("Post");
    const auto sheet = sheet_.lock();
    auto& label = find<FittingLabel>(*sheet, "step1AppNameLabel");
    EXPECT_EQ(label.width(), label.sizeHint().width());
    EXPECT_EQ(label.shownLines(), QStringList{"Post"});
}

TEST_P(EditorLayoutTest, ALongNameEndsInAnEllipsis) {
    openWithName(std::string(300, 'W'));
    expectStep1(QSize(400, 280));
    EXPECT_EQ(endOf(frame("step1AppNameLabel")), 380);
    const auto sheet = sheet_.lock();
    const QStringList shown = find<FittingLabel>(*sheet, "step1AppNameLabel").shownLines();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_TRUE(shown.front().endsWith(QChar(0x2026)));
    EXPECT_EQ(sheet->size(), QSize(400, 280));
}

class RecorderLayoutTest : public EditorLayoutTest {
protected:
    void expectRecorder() {
        const auto sheet = sheet_.lock();
        const QRect label = find<QWidget>(*sheet, "displayLabel").geometry();
        const QRect button = find<QWidget>(*sheet, "recordButton").geometry();
        const QRect view = sheet->keyRecorder().rect();
        EXPECT_EQ(view.height(), 36);
        EXPECT_EQ(label.x(), 12);
        expectSameCentre(label, view);
        EXPECT_EQ(endOf(button), view.width() - 8);
        expectSameCentre(button, view);
        EXPECT_GE(button.x(), endOf(label) + 8);
        EXPECT_TRUE(view.contains(label) && view.contains(button));
    }

    /// The label shows all of its text, in as many lines as it takes.
    void expectWholeLabel() {
        const auto sheet = sheet_.lock();
        const auto& label = find<FittingLabel>(*sheet, "displayLabel");
        EXPECT_EQ(label.shownLines().join(QString()), label.text());
    }
};

TEST_P(RecorderLayoutTest, Idle) {
    open(mailShortcut());
    expectRecorder();
    expectWholeLabel();
}

TEST_P(RecorderLayoutTest, Recording) {
    auto& sheet = open(mailShortcut());
    sheet.keyRecorder().toggleRecording();
    expectRecorder();
    expectWholeLabel();
    sheet.keyRecorder().stopRecording();
}

TEST_P(RecorderLayoutTest, AModifierIsMissing) {
    auto& sheet = open(mailShortcut());
    sheet.keyRecorder().toggleRecording();
    sheet.keyRecorder().handleCapturedKey(0, 0);
    expectRecorder();
    expectWholeLabel();
    sheet.keyRecorder().stopRecording();
}

TEST_P(RecorderLayoutTest, TheProcessIsNotTrusted) {
    auto& sheet = open(mailShortcut());
    services_.accessibilityTrust.trusted = false;
    sheet.keyRecorder().toggleRecording();
    expectRecorder();
    expectWholeLabel();
}

TEST_P(RecorderLayoutTest, TheTapIsRefused) {
    auto& sheet = open(mailShortcut());
    services_.eventTaps.refusesListenOnly = true;
    sheet.keyRecorder().toggleRecording();
    expectRecorder();
    expectWholeLabel();
}

INSTANTIATE_TEST_SUITE_P(, EditorLayoutTest, testing::Values(Language::japanese, Language::english),
                         languageName);
INSTANTIATE_TEST_SUITE_P(, RecorderLayoutTest,
                         testing::Values(Language::japanese, Language::english), languageName);

} // namespace
} // namespace hollowfernpike
