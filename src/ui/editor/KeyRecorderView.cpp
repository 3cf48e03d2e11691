#include "ui/editor/KeyRecorderView.h"

#include "app/Language.h"
#include "model/AppShortcut.h"
#include "platform/AccessibilityTrust.h"
#include "platform/Application.h"
#include "platform/EventTap.h"
#include "platform/MainQueue.h"
#include "platform/Services.h"
#include "ui/parts/CombinationWords.h"
#include "ui/parts/Labels.h"
#include "ui/parts/Sheets.h"

#include <QMouseEvent>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr std::uint16_t escapeKeyCode = 53;

QString displayString(std::uint16_t keyCode, std::uint64_t modifierFlags) {
    AppShortcut shortcut;
    shortcut.keyCode = keyCode;
    shortcut.modifierFlags = modifierFlags;
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

void KeyRecorderView::toggleRecording() {
    if (isRecording_) {
        stopRecording();
    } else {
        startRecording();
    }
}

void KeyRecorderView::mouseReleaseEvent(QMouseEvent* event) {
    if (!isRecording_ && event->button() == Qt::LeftButton && rect().contains(event->pos())) {
        startRecording();
    }
}

void KeyRecorderView::startRecording() {
    ++recordings_;
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

void KeyRecorderView::inThisRecording(std::function<void()> handle) {
    platform::services().mainQueue.async(
        [view = shared_from_this(), recording = recordings_, handle = std::move(handle)] {
            if (recording == view->recordings_) {
                handle();
            }
        });
}

void KeyRecorderView::abandonRecording() {
    ++recordings_;
    stopRecording();
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
        setLabel(localized("修飾キー(⌃⌥⇧⌘)を含めてください", "Include a modifier key (⌃⌥⇧⌘)."),
                 modifiersInWords());
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
    setLabel(displayString(keyCode, modifierFlags), combinationInWords(keyCode, modifierFlags));
}

void KeyRecorderView::showRecording(bool isRecording) {
    isRecording_ = isRecording;
    recordButton_->setText(isRecording ? localized("停止", "Stop") : localized("記録", "Record"));
    layOut();
    update();
}

void KeyRecorderView::setLabel(const QString& text, const QString& inWords) {
    displayLabel_->setText(text);
    displayLabel_->setToolTip(inWords.toHtmlEscaped());
    displayLabel_->setAccessibleDescription(inWords);
    setAccessibleDescription(text);
    layOut();
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
    } else if (type == platform::eventTapFocusLost) {
        view->inThisRecording([view] { view->abandonRecording(); });
    } else if (type == platform::eventKeyDown) {
        view->inThisRecording([view, keyCode = platform::checkedKeyCode(*event),
                               flags = event->flags] { view->handleCapturedKey(keyCode, flags); });
    }
    return event;
}

} // namespace hollowfernpike
