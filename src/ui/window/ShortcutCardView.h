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
/// It is 52 high; its owner gives it a width.
class ShortcutCardView final : public QWidget {
public:
    static constexpr int height = 52;

    /// Reports a press of a button; may be empty, and may destroy the card.
    using Callback = std::function<void()>;

    /// A card without a shortcut.
    explicit ShortcutCardView(QWidget* parent = nullptr);

    explicit ShortcutCardView(const AppShortcut& shortcut, QWidget* parent = nullptr);

    /// Shows this shortcut from now on.
    void configure(const AppShortcut& shortcut);

    /// What people should know of the combination, shown on hover and told by screen readers.
    void setNotice(const QString& notice);

    /// What the buttons do.
    void editTapped();
    void deleteTapped();

    IconView& iconView() const { return *iconView_; }
    FittingLabel& appNameLabel() const { return *appNameLabel_; }
    HotkeyBadge& hotkeyBadge() const { return *hotkeyBadge_; }
    SymbolButton& editButton() const { return *editButton_; }
    SymbolButton& deleteButton() const { return *deleteButton_; }

    Callback onEdit;
    Callback onDelete;

    QSize sizeHint() const override;

private:
    void setupUI();
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void placeViews();
    void showStanding();
    void describe();

    std::string unseenPath_; ///< of the application, until the card is painted
    QString notice_;
    IconView* iconView_;
    FittingLabel* appNameLabel_;
    HotkeyBadge* hotkeyBadge_;
    SymbolButton* editButton_;
    SymbolButton* deleteButton_;
};

} // namespace hollowfernpike
