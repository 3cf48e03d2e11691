#include "ui/window/MainWindowController.h"

#include "app/L10n.h"
#include "app/Language.h"
#include "hotkeys/HotkeyManager.h"
#include "model/OneLine.h"
#include "model/ShortcutStore.h"
#include "platform/Application.h"
#include "platform/ApplicationBundles.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "ui/editor/AddEditShortcutSheet.h"
#include "ui/exchange/ShortcutExchange.h"
#include "ui/icons/FileIcons.h"
#include "ui/icons/SymbolButton.h"
#include "ui/parts/AccessibleRole.h"
#include "ui/parts/Alert.h"
#include "ui/parts/CombinationWords.h"
#include "ui/parts/FontScale.h"
#include "ui/parts/HolderNotice.h"
#include "ui/parts/Sheets.h"
#include "ui/window/CardStackView.h"
#include "ui/window/HeaderBar.h"
#include "ui/window/ShortcutCardView.h"

#include <QApplication>
#include <QKeySequence>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace hollowfernpike {

/// The management window itself: the desktop's key for closing closes it, and its list scrolls to
/// the button that Tab moves the focus to; when people come back to it, it shows who holds their
/// combinations now. Closing hides it. Main thread only.
class ManagementWindow final : public QWidget {
public:
    ManagementWindow();

    /// Sets the list that scrolls. It must be in the window.
    void setScrollView(QScrollArea* scrollView) { scrollView_ = scrollView; }

    /// Told when the desktop's font changes.
    std::function<void()> onFontChange;

    /// Told when people come back to the window.
    std::function<void()> onReturn;

private:
    bool focusNextPrevChild(bool next) override;
    void changeEvent(QEvent* event) override;

    QScrollArea* scrollView_ = nullptr;
};

ManagementWindow::ManagementWindow() {
    setAccessibleRole(*this, QAccessible::Window);
    auto* close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
}

bool ManagementWindow::focusNextPrevChild(bool next) {
    const bool moved = QWidget::focusNextPrevChild(next);
    QWidget* focused = focusWidget();
    if (moved && scrollView_ != nullptr && scrollView_->widget()->isAncestorOf(focused)) {
        constexpr int roomForTheCard = 20; // above and below a button of it
        scrollView_->ensureWidgetVisible(focused, 0, roomForTheCard);
    }
    return moved;
}

void ManagementWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        HotkeyManager::shared().tryAgain();
        if (onReturn) {
            onReturn();
        }
    }
    if (event->type() == QEvent::FontChange && onFontChange) {
        onFontChange();
    }
    QWidget::changeEvent(event);
}

namespace {

const char* windowTitle() {
    return localized("Hollowfernpike - ショートカット管理", "Hollowfernpike - Manage Shortcuts");
}

/// The list of cards, which scrolls vertically and draws no background.
QScrollArea* makeScrollView() {
    auto* view = new QScrollArea;
    auto* cards = new CardStackView;
    view->setFrameShape(QFrame::NoFrame);
    view->setFocusPolicy(Qt::NoFocus);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setWidgetResizable(true);
    view->setWidget(cards);
    view->viewport()->setAutoFillBackground(false);
    cards->setAutoFillBackground(false);
    return view;
}

std::vector<const AddEditShortcutSheet*> openEditors() {
    std::vector<const AddEditShortcutSheet*> editors;
    for (const auto* widget : QApplication::topLevelWidgets()) {
        const auto* editor = dynamic_cast<const AddEditShortcutSheet*>(widget);
        if (editor != nullptr && editor->isVisible()) {
            editors.push_back(editor);
        }
    }
    return editors;
}

/// Away from the place of an editor that it would hide.
void moveAside(QWidget& editor) {
    constexpr int step = 28; // shows the other's title
    const auto others = openEditors();
    const auto isHidden = [&](const QWidget* other) {
        return (other->pos() - editor.pos()).manhattanLength() < step;
    };
    for (std::size_t moves = 0; moves < others.size(); ++moves) {
        if (std::ranges::any_of(others, isHidden)) {
            editor.move(editor.pos() + QPoint(step, step));
        }
    }
}

/// Shows an editor in a window of its own, which keeps itself alive.
void openEditor(const QScreen& screen, const std::optional<AppShortcut>& editing,
                const EditorDraft& draft = {}) {
    const auto editor = AddEditShortcutSheet::make(editing);
    editor->onSave = [isNew = !editing](const AppShortcut& shortcut) {
        isNew ? ShortcutStore::shared().add(shortcut) : ShortcutStore::shared().update(shortcut);
    };
    editor->takeUp(draft);
    center(*editor, screen);
    moveAside(*editor);
    makeKeyAndOrderFront(*editor);
    platform::services().application.activateIgnoringOtherApps();
}

std::vector<UUID> identifiersInStore() {
    std::vector<UUID> identifiers;
    for (const auto& shortcut : ShortcutStore::shared().shortcuts()) {
        identifiers.push_back(shortcut.id);
    }
    return identifiers;
}

} // namespace

MainWindowController::MainWindowController() : window_(new ManagementWindow) {
    window_->resize(grown(480), grown(400));
    window_->setObjectName(managementWindowName);
    window_->setWindowTitle(windowTitle());
    center(*window_, usersScreen());
    window_->setMinimumSize(grown(400), grown(300));
    setupUI();
    shown_ = identifiersInStore();
    reloadCards();
    window_->onFontChange = [this] { followFont(); };
    window_->onReturn = [this] { watchApplications(); };
    auto& notifications = platform::services().notificationCenter;
    shortcutsObservation_ = notifications.observe(shortcutsDidChange, [this] { followStore(); });
    refusedObservation_ =
        notifications.observe(refusedCombinationsDidChange, [this] { followHolders(); });
    languageObservation_ = notifications.observe(languageDidChange, [this] { relabel(); });
    watchApplications();
}

MainWindowController::~MainWindowController() {
    delete window_;
}

void MainWindowController::showWindow() {
    if (window_ != nullptr) {
        window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
        makeKeyAndOrderFront(*window_);
    }
}

QWidget* MainWindowController::window() const {
    return window_;
}

QScrollArea* MainWindowController::scrollView() const {
    return scrollView_;
}

CardStackView* MainWindowController::stackView() const {
    return scrollView_ == nullptr ? nullptr : static_cast<CardStackView*>(scrollView_->widget());
}

QPushButton* MainWindowController::addButton() const {
    return headerBar_ == nullptr ? nullptr : headerBar_->addButton();
}

SymbolButton* MainWindowController::exportButton() const {
    return headerBar_ == nullptr ? nullptr : headerBar_->exportButton();
}

SymbolButton* MainWindowController::importButton() const {
    return headerBar_ == nullptr ? nullptr : headerBar_->importButton();
}

void MainWindowController::setupUI() {
    auto* layout = new QVBoxLayout(window_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeaderBar());
    scrollView_ = makeScrollView();
    layout->addWidget(scrollView_, 1);
    window_->setScrollView(scrollView_);
    addButton()->setFocus();
}

QWidget* MainWindowController::makeHeaderBar() {
    headerBar_ = new HeaderBar;
    onClick(*exportButton(), [this] { exportShortcuts(); });
    onClick(*importButton(), [this] { importShortcuts(); });
    onClick(*addButton(), [this] { addShortcut(); });
    return headerBar_;
}

void MainWindowController::followFont() {
    window_->setMinimumSize(grown(400), grown(300));
    reloadCards();
}

// A shortcut that was added is the last one, behind those that were there. An import may bring one
// more, too, but replaces them all.
void MainWindowController::followStore() {
    auto now = identifiersInStore();
    const bool isAdded =
        now.size() == shown_.size() + 1 && std::equal(shown_.begin(), shown_.end(), now.begin());
    shown_ = std::move(now);
    reloadCards();
    if (scrollView_ != nullptr && isAdded) {
        ShortcutCardView* added = stackView()->cards().back();
        scrollView_->ensureWidgetVisible(added);
        added->markForAMoment();
    }
}

// Anew when people come back, because the desktop may not have told so far.
void MainWindowController::watchApplications() {
    applicationsWatch_ =
        platform::services().applicationBundles.watch([this] { followApplications(); });
}

void MainWindowController::followApplications() {
    renewFileIcons();
    if (scrollView_ != nullptr) {
        for (ShortcutCardView* card : stackView()->cards()) {
            card->renewApplication();
        }
    }
}

void MainWindowController::followHolders() {
    if (scrollView_ == nullptr) {
        return;
    }
    const auto cards = stackView()->cards();
    const auto& shortcuts = ShortcutStore::shared().shortcuts();
    for (std::size_t index = 0; index < std::min(cards.size(), shortcuts.size()); ++index) {
        cards[index]->setNotice(holderNotice(shortcuts[index]));
    }
}

void MainWindowController::reloadCards() {
    if (scrollView_ == nullptr) {
        return;
    }
    const auto focused = stackView()->focusedPlace();
    const auto cards = makeCards();
    stackView()->setCards(cards);
    if (focused) {
        cards.empty() ? addButton()->setFocus() : stackView()->focusOn(*focused);
    }
}

std::vector<ShortcutCardView*> MainWindowController::makeCards() {
    std::vector<ShortcutCardView*> cards;
    for (const AppShortcut& shortcut : ShortcutStore::shared().shortcuts()) {
        cards.push_back(makeCard(shortcut));
    }
    return cards;
}

ShortcutCardView* MainWindowController::makeCard(const AppShortcut& shortcut) {
    auto* card = new ShortcutCardView(shortcut);
    card->setNotice(holderNotice(shortcut));
    const QPointer<MainWindowController> controller = this;
    card->onEdit = [controller, shortcut] {
        if (controller != nullptr) {
            controller->editShortcut(shortcut);
        }
    };
    card->onDelete = [controller, shortcut] {
        if (controller != nullptr) {
            controller->deleteShortcut(shortcut);
        }
    };
    return card;
}

const QScreen& MainWindowController::screenForEditors() const {
    return window_ != nullptr && window_->isVisible() ? *window_->screen() : usersScreen();
}

void MainWindowController::addShortcut() {
    openEditor(screenForEditors(), std::nullopt);
}

void MainWindowController::editShortcut(const AppShortcut& shortcut) {
    openEditor(screenForEditors(), shortcut);
}

void MainWindowController::deleteShortcut(const AppShortcut& shortcut) {
    if (window_ == nullptr) {
        return;
    }
    const Alert question{
        .message = L10n::Main::deleteConfirmTitle(withoutDirections(shortcut.appName)),
        .informativeText = L10n::Main::deleteConfirmInfo(shortcut.displayString()),
        .buttons = {localized("削除", "Delete"), localized("キャンセル", "Cancel")},
        .hint = combinationInWords(shortcut.keyCode, shortcut.modifierFlags).toStdString()};
    question.beginSheet(*window_, [id = shortcut.id](int button) {
        if (button == 0) {
            ShortcutStore::shared().remove(id);
        }
    });
}

OpenWindows MainWindowController::openWindows() const {
    OpenWindows windows{.hasMainWindow = window_ != nullptr && window_->isVisible(), .editors = {}};
    for (const auto* editor : openEditors()) {
        windows.editors.push_back(editor->draft());
    }
    return windows;
}

void MainWindowController::reopen(const OpenWindows& windows) {
    if (windows.hasMainWindow) {
        showWindow();
    }
    const auto& shortcuts = ShortcutStore::shared().shortcuts();
    for (const auto& draft : windows.editors) {
        const auto edited = std::ranges::find_if(
            shortcuts, [&](const AppShortcut& shortcut) { return shortcut.id == draft.editing; });
        openEditor(screenForEditors(),
                   edited == shortcuts.end() ? std::nullopt : std::optional(*edited), draft);
    }
}

void MainWindowController::exportShortcuts() {
    ShortcutExchange::exportShortcuts(ExchangePresentation::sheetsOn(window_));
}

void MainWindowController::importShortcuts() {
    ShortcutExchange::importShortcuts(ExchangePresentation::sheetsOn(window_));
}

void MainWindowController::relabel() {
    if (window_ != nullptr) {
        window_->setWindowTitle(windowTitle());
        headerBar_->relabel();
    }
    reloadCards();
}

} // namespace hollowfernpike
