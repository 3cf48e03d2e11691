#include "ui/editor/EditorViews.h"

#include "app/Language.h"
#include "ui/editor/KeyRecorderView.h"
#include "ui/icons/IconView.h"
#include "ui/icons/Symbols.h"
#include "ui/parts/FontScale.h"
#include "ui/parts/Labels.h"
#include "ui/parts/LargeButton.h"

#include <algorithm>

namespace hollowfernpike {

namespace {

constexpr int margin = 20;
constexpr int bottomMargin = 16;
constexpr int iconSide = 32;
constexpr int signSide = 18;

FittingLabel* makeLabel(QWidget* parent, const char* name) {
    auto* label = new FittingLabel(parent);
    label->setObjectName(name);
    return label;
}

FittingLabel* makeHeading(QWidget* parent, const char* name, const QString& text) {
    auto* heading = makeLabel(parent, name);
    heading->setText(text);
    return heading;
}

template <class Button = QPushButton>
QPushButton* makeButton(QWidget* parent, const char* name, const QString& title) {
    auto* button = new Button(title, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

KeyRecorderView* adopted(KeyRecorderView& recorder, QWidget* parent) {
    recorder.setParent(parent);
    return &recorder;
}

QSize fitting(const QWidget& view, int maximumWidth) {
    const QSize size = view.sizeHint();
    return {std::min(size.width(), maximumWidth), size.height()};
}

QRect centeredBeside(const QRect& neighbour, int left, const QSize& size) {
    return {QPoint(left, neighbour.top() + (neighbour.height() - size.height()) / 2), size};
}

int endOf(const QRect& rect) {
    return rect.x() + rect.width();
}

int bottomOf(const QRect& rect) {
    return rect.y() + rect.height();
}

} // namespace

EditorViews::EditorViews(QWidget& window, KeyRecorderView& recorder)
    : step1Heading(makeHeading(&window, "step1Heading",
                               localized("ステップ 1: アプリを選択", "Step 1: Select an App"))),
      selectButton(makeButton<LargeButton>(&window, "selectButton",
                                           localized("アプリを選択...", "Select App..."))),
      step1AppIconView(new IconView(&window)),
      step1AppNameLabel(makeLabel(&window, "step1AppNameLabel")),
      step2Container(new QWidget(&window)),
      step2Heading(makeHeading(
          step2Container, "step2Heading",
          localized("ステップ 2: ショートカットキーを記録", "Step 2: Record Shortcut Key"))),
      keyRecorder(adopted(recorder, step2Container)), noticeSign(new IconView(&window)),
      noticeLabel(makeLabel(&window, "noticeLabel")),
      cancelButton(makeButton(&window, "cancelButton", localized("キャンセル", "Cancel"))),
      saveButton(makeButton(&window, "saveButton", localized("保存", "Save"))) {
    step1AppIconView->setObjectName("step1AppIconView");
    step2Container->setObjectName("step2Container");
    noticeSign->setObjectName("noticeSign");
    noticeSign->setIcon(symbolImage(Symbol::exclamationmarkTriangle));
    noticeLabel->setMaximumLineCount(2);
    adoptFont();
    setNotice({});
    saveButton->setDefault(true);
}

void EditorViews::adoptFont() const {
    for (auto* heading : {step1Heading, step2Heading}) {
        heading->setFont(systemFont(15, QFont::DemiBold));
    }
    step1AppNameLabel->setFont(systemFont(14, QFont::Medium));
    noticeLabel->setFont(systemFont(13, QFont::Normal));
    keyRecorder->adoptFont();
}

void EditorViews::layOut(const QSize& size) const {
    const int bottomOfStep1 = layOutStep1(size.width());
    layOutStep2(bottomOfStep1 + margin, size.width());
    layOutButtons(size);
    layOutNotice(size.width());
}

void EditorViews::setNotice(const QString& notice) const {
    noticeLabel->setText(notice);
    noticeLabel->setHidden(notice.isEmpty());
    noticeSign->setHidden(notice.isEmpty());
}

int EditorViews::layOutStep1(int width) const {
    const QPoint corner(margin, margin);
    step1Heading->setGeometry(QRect(corner, fitting(*step1Heading, width - 2 * margin)));

    const QRect button(QPoint(margin, bottomOf(step1Heading->geometry()) + 16),
                       selectButton->sizeHint());
    selectButton->setGeometry(button);

    const QRect icon =
        centeredBeside(button, endOf(button) + 12, QSize(grown(iconSide), grown(iconSide)));
    step1AppIconView->setGeometry(icon);

    const int nameLeft = endOf(icon) + 8;
    const QSize name = fitting(*step1AppNameLabel, width - margin - nameLeft);
    step1AppNameLabel->setGeometry(centeredBeside(icon, nameLeft, name));
    return bottomOf(button);
}

void EditorViews::layOutStep2(int top, int width) const {
    const QSize heading = fitting(*step2Heading, width - 2 * margin);
    step2Heading->setGeometry(QRect(QPoint(margin, 0), heading));
    const int recorderTop = heading.height() + 12;
    keyRecorder->setGeometry(margin, recorderTop, width - 2 * margin, keyRecorder->height());
    step2Container->setGeometry(0, top, width, recorderTop + keyRecorder->height());
}

void EditorViews::layOutButtons(const QSize& size) const {
    const int height = std::max(saveButton->sizeHint().height(), cancelButton->sizeHint().height());
    QRect save(0, 0, saveButton->sizeHint().width(), height);
    save.moveBottomRight(QPoint(size.width() - margin - 1, size.height() - bottomMargin - 1));
    saveButton->setGeometry(save);

    QRect cancel(0, 0, cancelButton->sizeHint().width(), height);
    cancel.moveBottomRight(QPoint(save.left() - 8 - 1, save.bottom()));
    cancelButton->setGeometry(cancel);
}

// Between the recorder and the buttons.
void EditorViews::layOutNotice(int width) const {
    constexpr int gap = 6;
    const int side = grown(signSide);
    const int top = bottomOf(step2Container->geometry()) + gap;
    const QRect room(margin, top, width - 2 * margin, saveButton->y() - gap - top);
    noticeLabel->setGeometry(room.adjusted(side + gap, 0, 0, 0));
    noticeSign->setGeometry(centeredBeside(room, margin, QSize(side, side)));
}

} // namespace hollowfernpike
