#pragma once

#include "model/AppShortcut.h"

#include <QWidget>

#include <functional>

namespace hollowfernpike {

class FittingLabel;
class HotkeyBadge;
class IconView;
class SymbolButton;

/// Shows one shortcut: the application's icon and name, the key combination as a badge, and buttons
/// to edit and to delete it. Keeps nothing of the shortcut but what it shows. Its texts are in the
/// language of the moment it was made. Main thread only.
///
/// It takes the focus; then Return edits and Delete deletes, as its buttons do. It is 52 high,
/// or higher for large fonts; its owner gives it a width.
class ShortcutCardView final : public QWidget {
public:
    static constexpr int usualHeight = 52;

    /// Reports a press of a button; may be empty, and may destroy the card.
    using Callback = std::function<void()>;

    /// A card without a shortcut.
    explicit ShortcutCardView(QWidget* parent = nullptr);

    explicit ShortcutCardView(const AppShortcut& shortcut, QWidget* parent = nullptr);

    /// Shows this shortcut from now on.
    void configure(const AppShortcut& shortcut);

    /// Shows what has become of the application, by its name, its icon and whether it is still
    /// there.
    void renewApplication();

    /// What people should know of the combination: a sign beside it, with these words on hover, and
    /// told by screen readers. No sign without words.
    void setNotice(const QString& notice);

    /// Shows for a moment that this is the one that was added.
    void markForAMoment();

    /// What the buttons do.
    void editTapped();
    void deleteTapped();

    IconView& iconView() const { return *iconView_; }
    FittingLabel& appNameLabel() const { return *appNameLabel_; }
    HotkeyBadge& hotkeyBadge() const { return *hotkeyBadge_; }
    /// Null while there is no notice.
    const IconView* noticeSign() const { return notice_.isEmpty() ? nullptr : noticeSign_; }
    SymbolButton& editButton() const { return *editButton_; }
    SymbolButton& deleteButton() const { return *deleteButton_; }

    Callback onEdit;
    Callback onDelete;

    QSize sizeHint() const override;

private:
    void setupUI();
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void placeViews();
    void tellOnBadge();
    void makeNoticeSign();
    void showStanding();
    void describe();

    std::string appPath_;
    std::string appName_;
    bool isStandingShown_ = true;
    QString knownName_; ///< what people call the application; empty if it is the stored name
    QString notice_;
    IconView* iconView_;
    FittingLabel* appNameLabel_;
    HotkeyBadge* hotkeyBadge_;
    IconView* noticeSign_ = nullptr; ///< made with the first notice
    SymbolButton* editButton_;
    SymbolButton* deleteButton_;
    bool isMarked_ = false;
};

} // namespace hollowfernpike
