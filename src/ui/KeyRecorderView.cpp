#include "ui/KeyRecorderView.h"

#include "app/Language.h"
#include "model/AppShortcut.h"
#include "platform/AccessibilityTrust.h"
#include "platform/Application.h"
#include "platform/KeyCode.h"
#include "platform/MainQueue.h"
#include "platform/Services.h"
#include "ui/FittingLabel.h"
#include "ui/Fonts.h"
#include "ui/SystemColors.h"
#include "ui/Windows.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionFocusRect>

#include <algorithm>

namespace hollowfernpike {

namespace {

constexpr std::uint16_t escapeKeyCode = 53;
constexpr int fixedHeight = 36;
constexpr int cornerRadius = 6;
constexpr int labelInset = 12;
constexpr int buttonInset = 8;
constexpr int gap = 8;
constexpr int recordingBorderWidth = 2;

QString displayString(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    const AppShortcut shortcut{.id = UUID::random(),
                               .keyCode = keyCode,
                               .modifierFlags = modifierFlags,
                               .appPath = {},
                               .appName = {},
                               .appBundleIdentifier = {}};
    return QString::fromStdString(shortcut.displayString());
}

bool keepsApplicationRegular(const platform::ApplicationWindow& window) {
    return window.isVisible && window.className.find("StatusBar") == std::string::npos;
}

} // namespace

std::shared_ptr<KeyRecorderView> KeyRecorderView::make() {
    return std::shared_ptr<KeyRecorderView>(new KeyRecorderView);
}

KeyRecorderView::KeyRecorderView()
    : displayLabel_(new FittingLabel(this)), recordButton_(new QPushButton(this)) {
    setupUI();
}

void KeyRecorderView::setupUI() {
    setObjectName("keyRecorder");
    setFixedHeight(fixedHeight);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(localized("ショートカットキー", "Shortcut key"));
    displayLabel_->setObjectName("displayLabel");
    displayLabel_->setAlignment(Qt::AlignCenter);
    displayLabel_->setFont(systemFont(14, QFont::Medium));
    displayLabel_->setMaximumLineCount(2);
    setLabel(localized("クリックして記録", "Click to record"));
    recordButton_->setObjectName("recordButton");
    recordButton_->setText(localized("記録", "Record"));
    connect(recordButton_, &QPushButton::clicked, this, &KeyRecorderView::toggleRecording);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &KeyRecorderView::stopRecording);
}

void KeyRecorderView::toggleRecording() {
    if (isRecording_) {
        stopRecording();
    } else {
        startRecording();
    }
}

void KeyRecorderView::startRecording() {
    showRecording(true);
    setLabel(localized("キーを入力してください...", "Press a key..."));
    bringToFront();
    auto& trust = platform::services().accessibilityTrust;
    if (!trust.isProcessTrusted()) {
        trust.isProcessTrustedWithPrompt();
        setLabel(localized("アクセシビリティ権限を許可後、再度「記録」を押してください",
                           "Grant accessibility permission, then press \"Record\" again."));
        showRecording(false);
    } else if (!installEventTap()) {
        setLabel(
            localized("キーキャプチャの初期化に失敗しました", "Failed to initialize key capture."));
        showRecording(false);
    }
}

void KeyRecorderView::bringToFront() {
    auto& application = platform::services().application;
    application.setActivationPolicy(platform::ActivationPolicy::regular);
    application.activateIgnoringOtherApps();
    if (window() != this) {
        makeKeyAndOrderFront(*window());
        setFocus();
    }
}

bool KeyRecorderView::installEventTap() {
    heldByTap_ = shared_from_this();
    eventTap_ = platform::services().eventTaps.create(platform::EventTapOptions::listenOnly,
                                                      &keyRecorderEventTapCallback, this);
    if (!eventTap_) {
        heldByTap_.reset();
        return false;
    }
    runLoopSource_ = eventTap_->createRunLoopSource();
    runLoopSource_->addToMainRunLoop();
    eventTap_->enable(true);
    return true;
}

void KeyRecorderView::stopRecording() {
    if (!isRecording_) {
        return;
    }
    const auto self = shared_from_this();
    showRecording(false);
    if (eventTap_) {
        removeEventTap();
    }
    returnToAccessory();
    if (!capturedKeyCode_) {
        setLabel(localized("クリックして記録", "Click to record"));
    }
}

void KeyRecorderView::removeEventTap() {
    eventTap_->enable(false);
    if (runLoopSource_) {
        runLoopSource_->removeFromMainRunLoop();
        runLoopSource_.reset();
    }
    eventTap_->invalidate();
    eventTap_.reset();
    heldByTap_.reset();
}

void KeyRecorderView::returnToAccessory() {
    auto& application = platform::services().application;
    if (std::ranges::none_of(application.windows(), keepsApplicationRegular)) {
        application.setActivationPolicy(platform::ActivationPolicy::accessory);
    }
}

void KeyRecorderView::handleCapturedKey(std::uint16_t keyCode, std::uint64_t flags) {
    if (keyCode == escapeKeyCode) {
        stopRecording();
        return;
    }
    const std::uint64_t modifiers = flags & modifierMask;
    if (modifiers == 0) {
        setLabel(localized("修飾キー(⌃⌥⇧⌘)を含めてください", "Include a modifier key (⌃⌥⇧⌘)."));
        return;
    }
    setShortcut(keyCode, modifiers);
    stopRecording();
    if (onKeyRecorded) {
        onKeyRecorded(keyCode, modifiers);
    }
}

void KeyRecorderView::setShortcut(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    capturedKeyCode_ = keyCode;
    capturedModifierFlags_ = modifierFlags;
    setLabel(displayString(keyCode, modifierFlags));
}

void KeyRecorderView::showRecording(bool isRecording) {
    isRecording_ = isRecording;
    recordButton_->setText(isRecording ? localized("停止", "Stop") : localized("記録", "Record"));
    layOut();
    update();
}

void KeyRecorderView::setLabel(const QString& text) {
    displayLabel_->setText(text);
    setAccessibleDescription(text);
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
                      height() - 2 * recordingBorderWidth);
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

void KeyRecorderView::paintEvent(QPaintEvent*) {
    const qreal border = isRecording_ ? recordingBorderWidth : 1;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(
        isRecording_ ? palette().color(QPalette::Highlight) : separatorColor(palette()), border));
    const qreal inset = border / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), cornerRadius,
                            cornerRadius);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect.adjust(3, 3, -3, -3);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

const platform::KeyEvent* keyRecorderEventTapCallback(platform::EventTap* /*proxy*/,
                                                      platform::EventType type,
                                                      const platform::KeyEvent* event,
                                                      void* userInfo) {
    auto* const view = static_cast<KeyRecorderView*>(userInfo);
    if (view == nullptr) {
        return event;
    }
    if (type == platform::eventTapDisabledByTimeout ||
        type == platform::eventTapDisabledByUserInput) {
        if (platform::EventTap* const tap = view->eventTap()) {
            tap->enable(true);
        }
    } else if (type == platform::eventKeyDown) {
        platform::services().mainQueue.async(
            [view = view->shared_from_this(), keyCode = platform::checkedKeyCode(*event),
             flags = event->flags] { view->handleCapturedKey(keyCode, flags); });
    }
    return event;
}

} // namespace hollowfernpike
