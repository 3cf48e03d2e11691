// How the recorder looks: its parts, where they lie and its border.

#include "ui/editor/KeyRecorderView.h"

#include "app/Language.h"
#include "ui/parts/AccessibleRole.h"
#include "ui/parts/FontScale.h"
#include "ui/parts/Labels.h"
#include "ui/parts/Sheets.h"
#include "ui/parts/SystemColors.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPushButton>

#include <algorithm>

namespace hollowfernpike {

namespace {

constexpr int usualHeight = 36;
constexpr int frameRadius = 6;
constexpr int labelInset = 12;
constexpr int buttonInset = 8;
constexpr int gap = 8;
constexpr int roomForRing = 5;
constexpr int recordingBorderWidth = 2;

} // namespace

void KeyRecorderView::setupUI() {
    setAccessibleRole(*this, QAccessible::Pane);
    setObjectName("keyRecorder");
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(localized("ショートカットキー", "Shortcut key"));
    displayLabel_->setObjectName("displayLabel");
    displayLabel_->setAlignment(Qt::AlignCenter);
    displayLabel_->setMaximumLineCount(2);
    adoptFont();
    setLabel(localized("クリックして記録", "Click to record"));
    recordButton_->setObjectName("recordButton");
    recordButton_->setText(localized("記録", "Record"));
    onClick(*recordButton_, [this] { toggleRecording(); });
    connect(qApp, &QCoreApplication::aboutToQuit, this, &KeyRecorderView::stopRecording);
}

void KeyRecorderView::adoptFont() {
    setFixedHeight(grown(usualHeight));
    displayLabel_->setFont(systemFont(14, QFont::Medium));
    layOut();
}

void KeyRecorderView::layOut() {
    const QSize button =
        recordButton_->sizeHint().boundedTo(QSize(width(), height() - 2 * recordingBorderWidth));
    QRect frame(QPoint(width() - buttonInset - button.width(), 0), button);
    frame.moveTop((height() - button.height()) / 2);
    recordButton_->setGeometry(frame);

    const int room = frame.left() - gap - labelInset;
    const QSize label(std::min(displayLabel_->sizeHint().width(), room),
                      height() - 2 * roomForRing);
    displayLabel_->setGeometry(QRect(QPoint(labelInset, (height() - label.height()) / 2), label));
}

void KeyRecorderView::resizeEvent(QResizeEvent*) {
    layOut();
}

void KeyRecorderView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::StyleChange) {
        layOut();
    }
    QWidget::changeEvent(event);
}

// Whether another program has the focus is for the tap to tell: the toolkit takes a window for
// inactive, too, while a window manager holds the Super key.
bool KeyRecorderView::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate && QApplication::activeWindow() != nullptr) {
        abandonRecording();
    }
    return QWidget::event(event);
}

void KeyRecorderView::hideEvent(QHideEvent*) {
    abandonRecording();
}

void KeyRecorderView::paintEvent(QPaintEvent*) {
    const qreal border = isRecording_ ? recordingBorderWidth : 1;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isRecording_ ? accentColor(palette()) : separatorColor(palette()), border));
    const qreal inset = border / 2;
    const qreal radius = frameRadius - inset; // of the line's middle
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
    if (hasFocus() && !isRecording_) { // while it records, its border says so
        constexpr qreal ringInset = 3.5;
        constexpr qreal ringRadius = frameRadius - ringInset;
        painter.setPen(accentColor(palette()));
        painter.drawRoundedRect(
            QRectF(rect()).adjusted(ringInset, ringInset, -ringInset, -ringInset), ringRadius,
            ringRadius);
    }
}

} // namespace hollowfernpike
