#pragma once

#include "model/AppShortcut.h"
#include "platform/RunLoop.h"
#include "ui/editor/EditorDraft.h"
#include "ui/editor/EditorViews.h"

#include <QIcon>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace hollowfernpike {

/// The window in which a shortcut is made or changed: first the application, then the keys. It
/// hands the result to its owner and changes no store; it only says who has the combination
/// already. Main thread only.
///
/// Return saves, or presses the button that has the focus. It does nothing before there is
/// something to save.
///
/// It keeps itself alive while it is shown; once closed it lives as long as somebody holds it.
class AddEditShortcutSheet final : public QWidget,
                                   public std::enable_shared_from_this<AddEditShortcutSheet> {
public:
    /// For a new shortcut, or for changing an existing one. Not shown yet.
    static std::shared_ptr<AddEditShortcutSheet>
    make(std::optional<AppShortcut> editing = std::nullopt);
    AddEditShortcutSheet(const AddEditShortcutSheet&) = delete;
    AddEditShortcutSheet& operator=(const AddEditShortcutSheet&) = delete;
    ~AddEditShortcutSheet() override;

    /// Called once with the finished shortcut, before the window closes. The owner's to set.
    std::function<void(const AppShortcut& shortcut)> onSave;

    /// Lets the user choose the application, in a panel on this window.
    void selectApp();

    /// Calls `onSave` and closes the window; if something is missing, only tells the user what.
    void saveSheet();

    /// Closes the window without calling `onSave`.
    void cancelSheet();

    /// What has been entered so far, and the same taken up by another editor of that shortcut.
    EditorDraft draft() const;
    void takeUp(const EditorDraft& draft);

    KeyRecorderView& keyRecorder() { return *keyRecorder_; }

private:
    explicit AddEditShortcutSheet(std::optional<AppShortcut> editing);

    void takeEditedShortcut();
    void buildUI();
    void buildKeyboardUse();
    QPushButton& buttonForReturn() const;
    void pressReturn();
    void setSelectedApp(const std::string& path);
    void showSelectedApp();
    void showStep2();
    QString notice() const;
    void updateNotice();
    void tell(const char* message);

    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    const std::optional<AppShortcut> editingShortcut_;
    std::optional<std::string> selectedAppPath_;
    std::optional<std::string> selectedAppName_;
    std::optional<std::string> selectedBundleIdentifier_;
    std::optional<QIcon> selectedAppIcon_;
    std::shared_ptr<KeyRecorderView> keyRecorder_;
    EditorViews views_;

    /// It has grown: a compositor that gives it the keys back may do so with the size from before.
    bool mayGetOldSize_ = false;
    std::unique_ptr<platform::Subscription> shortcutsObservation_;
    std::unique_ptr<platform::Subscription> holdersObservation_;
    std::shared_ptr<AddEditShortcutSheet> heldWhileShown_; ///< ourselves
};

} // namespace hollowfernpike
