#pragma once

#include "model/AppShortcut.h"
#include "platform/RunLoop.h"
#include "ui/window/OpenWindows.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

class QPushButton;
class QScreen;
class QScrollArea;

namespace hollowfernpike {

class CardStackView;
class HeaderBar;
class ManagementWindow;
class ShortcutCardView;
class SymbolButton;

/// The object name of the management window.
inline constexpr const char* managementWindowName = "management";

/// Owns the management window, which shows every shortcut of the store as a card and lets the user
/// add, edit, delete, export and import them. A card that is added is scrolled to and marked. It
/// follows the store and the language for as long as it lives, its window shown or hidden; closing
/// the window hides it. Main thread only.
///
/// If the window is destroyed, it is not made again; functions that need it then do nothing.
class MainWindowController final : public QObject {
public:
    MainWindowController();
    MainWindowController(const MainWindowController&) = delete;
    MainWindowController& operator=(const MainWindowController&) = delete;
    ~MainWindowController() override;

    /// Shows the window, makes it the key window and brings it before our others.
    void showWindow();

    /// Builds the list anew from the store.
    void reloadCards();

    /// Opens one more editor, for a new shortcut.
    void addShortcut();

    /// Which windows are open, this one and the editors; and the same opened again.
    OpenWindows openWindows() const;
    void reopen(const OpenWindows& windows);

    /// In sheets on the window.
    void exportShortcuts();
    void importShortcuts();

    /// The window and what it consists of; each null once it is destroyed.
    QWidget* window() const;
    QScrollArea* scrollView() const;
    CardStackView* stackView() const;
    QPushButton* addButton() const;
    SymbolButton* exportButton() const;
    SymbolButton* importButton() const;

private:
    void setupUI();
    void followFont();
    void followStore();
    void watchApplications();
    void followApplications();
    void followHolders();
    const QScreen& screenForEditors() const;
    QWidget* makeHeaderBar();
    std::vector<ShortcutCardView*> makeCards();
    ShortcutCardView* makeCard(const AppShortcut& shortcut);
    void editShortcut(const AppShortcut& shortcut);
    void deleteShortcut(const AppShortcut& shortcut);
    void relabel();

    QPointer<ManagementWindow> window_;
    QPointer<QScrollArea> scrollView_;
    QPointer<HeaderBar> headerBar_;
    std::unique_ptr<platform::Subscription> shortcutsObservation_;
    std::unique_ptr<platform::Subscription> refusedObservation_;
    std::unique_ptr<platform::Subscription> languageObservation_;
    std::unique_ptr<platform::Subscription> applicationsWatch_;
    std::vector<UUID> shown_; ///< the shortcuts at the last change
};

} // namespace hollowfernpike
