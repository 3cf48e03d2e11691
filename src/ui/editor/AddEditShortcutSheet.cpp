#include "ui/editor/AddEditShortcutSheet.h"

#include "app/L10n.h"
#include "app/Language.h"
#include "hotkeys/HotkeyManager.h"
#include "model/ShortcutStore.h"
#include "platform/ApplicationBundles.h"
#include "platform/MainQueue.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "ui/editor/ApplicationPanel.h"
#include "ui/editor/KeyRecorderView.h"
#include "ui/icons/FileIcons.h"
#include "ui/icons/IconView.h"
#include "ui/parts/AccessibleRole.h"
#include "ui/parts/Alert.h"
#include "ui/parts/AppName.h"
#include "ui/parts/FontScale.h"
#include "ui/parts/HolderNotice.h"
#include "ui/parts/Labels.h"
#include "ui/parts/Sheets.h"

#include <QApplication>
#include <QHideEvent>
#include <QPointer>
#include <QShortcut>

#include <algorithm>
#include <filesystem>
#include <functional>
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

void onKey(QWidget& window, Qt::Key key, const std::function<void()>& action) {
    auto* shortcut = new QShortcut(key, &window);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, &window, action);
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
    setFixedSize(grown(windowWidth), grown(heightOfStep1));
    takeEditedShortcut();
    buildUI();
    connect(qApp, &QCoreApplication::aboutToQuit, this, &QWidget::close);
}

// A recorder that is still recording outlives its window; as a child it would be deleted.
AddEditShortcutSheet::~AddEditShortcutSheet() {
    disconnect(qApp, nullptr, this, nullptr);
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
            self->updateNotice();
        }
    };
    auto& notifications = platform::services().notificationCenter;
    shortcutsObservation_ = notifications.observe(shortcutsDidChange, [this] { updateNotice(); });
    holdersObservation_ =
        notifications.observe(refusedCombinationsDidChange, [this] { updateNotice(); });
    updateNotice();
    buildKeyboardUse();
    if (selectedAppPath_) {
        showStep2();
    }
}

void AddEditShortcutSheet::buildKeyboardUse() {
    onKey(*this, Qt::Key_Escape, [this] { views_.cancelButton->click(); });
    onKey(*this, Qt::Key_Return, [this] { pressReturn(); });
    onKey(*this, Qt::Key_Enter, [this] { pressReturn(); });
    connect(qApp, &QApplication::focusChanged, this,
            [this] { views_.saveButton->setDefault(&buttonForReturn() == views_.saveButton); });
    if (editingShortcut_) {
        keyRecorder_->setFocus();
    } else {
        views_.selectButton->setFocus();
    }
}

QPushButton& AddEditShortcutSheet::buttonForReturn() const {
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    return focused != nullptr ? *focused : *views_.saveButton;
}

void AddEditShortcutSheet::pressReturn() {
    if (views_.saveButton->isEnabled()) {
        buttonForReturn().click();
    }
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
    showAppName(*views_.step1AppNameLabel, *selectedAppPath_,
                selectedAppName_.value_or(localized("不明", "Unknown")));
    views_.layOut(size());
}

void AddEditShortcutSheet::showStep2() {
    views_.step2Container->show();
    if (height() < grown(heightOfBothSteps)) {
        setFixedHeight(grown(heightOfBothSteps));
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
    shortcutsObservation_.reset(); // what it saves is not taken by another
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
        updateNotice();
    }
}

QString AddEditShortcutSheet::notice() const {
    AppShortcut wanted = editingShortcut_.value_or(AppShortcut{});
    wanted.keyCode = *keyRecorder_->capturedKeyCode();
    wanted.modifierFlags = *keyRecorder_->capturedModifierFlags();
    const auto& shortcuts = ShortcutStore::shared().shortcuts();
    const auto owner = std::ranges::find_if(shortcuts, [&](const AppShortcut& other) {
        return other.id != wanted.id && other.keyCode == wanted.keyCode &&
               ((other.modifierFlags ^ wanted.modifierFlags) & modifierMask) == 0;
    });
    return owner == shortcuts.end()
               ? holderNotice(wanted)
               : QString::fromStdString(
                     L10n::taken(shownAppName(owner->appPath, owner->appName).toStdString()));
}

void AddEditShortcutSheet::updateNotice() {
    views_.setNotice(keyRecorder_->capturedKeyCode() ? notice() : QString());
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
    if (event->type() == QEvent::FontChange) {
        views_.adoptFont();
        setFixedSize(grown(windowWidth),
                     grown(views_.step2Container->isHidden() ? heightOfStep1 : heightOfBothSteps));
    }
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
