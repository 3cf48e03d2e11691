#include "ui/editor/AddEditShortcutSheet.h"

#include "app/Language.h"
#include "model/OneLine.h"
#include "platform/ApplicationBundles.h"
#include "platform/MainQueue.h"
#include "platform/Services.h"
#include "ui/editor/ApplicationPanel.h"
#include "ui/editor/KeyRecorderView.h"
#include "ui/icons/FileIcons.h"
#include "ui/icons/IconView.h"
#include "ui/parts/AccessibleRole.h"
#include "ui/parts/Alert.h"
#include "ui/parts/Labels.h"
#include "ui/parts/Sheets.h"

#include <QCoreApplication>
#include <QHideEvent>
#include <QPointer>
#include <QShortcut>

#include <filesystem>
#include <utility>

namespace hollowfernpike {

namespace {

constexpr int windowWidth = 400;
constexpr int heightOfStep1 = 200;
constexpr int heightOfBothSteps = 280;

constexpr Qt::WindowFlags titledAndClosable = Qt::Dialog | Qt::CustomizeWindowHint |
                                              Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                              Qt::WindowCloseButtonHint;

/// The last part of the path without its extension; absent if there is no such part.
std::optional<std::string> nameAt(const std::string& path) {
    const auto last = path.find_last_not_of('/');
    if (last == std::string::npos) {
        return std::nullopt;
    }
    return std::filesystem::path(path.substr(0, last + 1)).stem().string();
}

void addShortcut(QWidget& window, Qt::Key key, QAbstractButton* button) {
    auto* shortcut = new QShortcut(key, &window);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
}

} // namespace

std::shared_ptr<AddEditShortcutSheet>
AddEditShortcutSheet::make(std::optional<AppShortcut> editing) {
    return std::shared_ptr<AddEditShortcutSheet>(new AddEditShortcutSheet(std::move(editing)));
}

AddEditShortcutSheet::AddEditShortcutSheet(std::optional<AppShortcut> editing)
    : QWidget(nullptr, titledAndClosable), editingShortcut_(std::move(editing)),
      keyRecorder_(KeyRecorderView::make()), views_(*this, *keyRecorder_) {
    setAccessibleRole(*this, QAccessible::Dialog);
    setFixedSize(windowWidth, heightOfStep1);
    takeEditedShortcut();
    buildUI();
    connect(qApp, &QCoreApplication::aboutToQuit, this, &QWidget::close);
}

// A recorder that is still recording outlives its window; as a child it would be deleted.
AddEditShortcutSheet::~AddEditShortcutSheet() {
    keyRecorder_->setParent(nullptr);
}

void AddEditShortcutSheet::takeEditedShortcut() {
    if (!editingShortcut_) {
        return;
    }
    selectedAppPath_ = editingShortcut_->appPath;
    selectedAppName_ = editingShortcut_->appName;
    selectedBundleIdentifier_ = editingShortcut_->appBundleIdentifier;
    selectedAppIcon_ = iconForFile(*selectedAppPath_);
    keyRecorder_->setShortcut(editingShortcut_->keyCode, editingShortcut_->modifierFlags);
}

void AddEditShortcutSheet::buildUI() {
    setWindowTitle(editingShortcut_ ? localized("ショートカット編集", "Edit Shortcut")
                                    : localized("ショートカット追加", "Add Shortcut"));
    showSelectedApp();
    views_.step2Container->setHidden(!selectedAppPath_);
    views_.saveButton->setEnabled(keyRecorder_->capturedKeyCode().has_value());
    onClick(*views_.selectButton, [this] { selectApp(); });
    onClick(*views_.cancelButton, [this] { cancelSheet(); });
    onClick(*views_.saveButton, [this] { saveSheet(); });
    keyRecorder_->onKeyRecorded = [self = QPointer(this)](std::uint16_t, std::uint64_t) {
        if (self) {
            self->views_.saveButton->setEnabled(true);
        }
    };
    buildKeyboardUse();
    if (selectedAppPath_) {
        showStep2();
    }
}

void AddEditShortcutSheet::buildKeyboardUse() {
    addShortcut(*this, Qt::Key_Escape, views_.cancelButton);
    addShortcut(*this, Qt::Key_Return, views_.saveButton);
    addShortcut(*this, Qt::Key_Enter, views_.saveButton);
    views_.selectButton->setFocus();
}

void AddEditShortcutSheet::selectApp() {
    ApplicationPanel::beginSheet(*this, [self = QPointer(this)](const std::string& path) {
        if (self) {
            self->setSelectedApp(path);
        }
    });
}

void AddEditShortcutSheet::setSelectedApp(const std::string& path) {
    selectedAppPath_ = path;
    selectedAppName_ = nameAt(path);
    if (const auto bundle = platform::services().applicationBundles.bundleAt(path)) {
        selectedBundleIdentifier_ = bundle->bundleIdentifier;
    }
    selectedAppIcon_ = iconForFile(path);
    showSelectedApp();
    showStep2();
}

void AddEditShortcutSheet::showSelectedApp() {
    if (!selectedAppIcon_) {
        return;
    }
    views_.step1AppIconView->setIcon(*selectedAppIcon_);
    views_.step1AppNameLabel->setText(
        selectedAppName_ ? QString::fromStdString(withoutDirections(*selectedAppName_))
                         : localized("不明", "Unknown"));
    views_.layOut(size());
}

void AddEditShortcutSheet::showStep2() {
    views_.step2Container->show();
    if (height() < heightOfBothSteps) {
        setFixedHeight(heightOfBothSteps);
    }
}

void AddEditShortcutSheet::saveSheet() {
    const auto keyCode = keyRecorder_->capturedKeyCode();
    const auto modifierFlags = keyRecorder_->capturedModifierFlags();
    if (!keyCode || !modifierFlags) {
        tell(localized("ショートカットキーを記録してください", "Please record a shortcut key."));
        return;
    }
    if (!selectedAppPath_ || !selectedAppName_ || !selectedBundleIdentifier_) {
        tell(localized("起動するアプリを選択してください", "Please select an app to launch."));
        return;
    }
    if (onSave) {
        onSave({.id = editingShortcut_ ? editingShortcut_->id : UUID::random(),
                .keyCode = *keyCode,
                .modifierFlags = *modifierFlags,
                .appPath = *selectedAppPath_,
                .appName = *selectedAppName_,
                .appBundleIdentifier = *selectedBundleIdentifier_});
    }
    close();
}

EditorDraft AddEditShortcutSheet::draft() const {
    return {.editing = editingShortcut_ ? std::optional(editingShortcut_->id) : std::nullopt,
            .appPath = selectedAppPath_,
            .keyCode = keyRecorder_->capturedKeyCode(),
            .modifierFlags = keyRecorder_->capturedModifierFlags()};
}

void AddEditShortcutSheet::takeUp(const EditorDraft& draft) {
    if (draft.appPath && draft.appPath != selectedAppPath_) {
        setSelectedApp(*draft.appPath);
    }
    if (draft.keyCode && draft.modifierFlags) {
        keyRecorder_->setShortcut(*draft.keyCode, *draft.modifierFlags);
        views_.saveButton->setEnabled(true);
    }
}

void AddEditShortcutSheet::tell(const char* message) {
    Alert{.style = Alert::Style::warning, .message = message}.beginSheet(*this);
}

void AddEditShortcutSheet::cancelSheet() {
    close();
}

void AddEditShortcutSheet::resizeEvent(QResizeEvent*) {
    views_.layOut(size());
}

void AddEditShortcutSheet::changeEvent(QEvent* event) {
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        views_.layOut(size());
    }
    QWidget::changeEvent(event);
}

void AddEditShortcutSheet::showEvent(QShowEvent*) {
    heldWhileShown_ = shared_from_this();
}

// Lets go of itself in a later turn: a button of this window may be what closes it.
void AddEditShortcutSheet::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        platform::services().mainQueue.async([self = std::exchange(heldWhileShown_, nullptr)] {});
    }
}

} // namespace hollowfernpike
