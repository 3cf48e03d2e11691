#include "ui/window/MainWindowController.h"

#include "app/L10n.h"
#include "app/Language.h"
#include "hotkeys/HotkeyManager.h"
#include "model/OneLine.h"
#include "model/ShortcutStore.h"
#include "platform/Application.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "ui/editor/AddEditShortcutSheet.h"
#include "ui/exchange/ShortcutExchange.h"
#include "ui/icons/SymbolButton.h"
#include "ui/parts/AccessibleRole.h"
#include "ui/parts/Alert.h"
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
#include <optional>
#include <utility>

namespace hollowfernpike {

/// The management window itself: the desktop's key for closing closes it, and its list scrolls to
/// the button that Tab moves the focus to. Closing hides it. Main thread only.
class ManagementWindow final : public QWidget {
public:
    ManagementWindow();

    /// Sets the list that scrolls. It must be in the window.
    void setScrollView(QScrollArea* scrollView) { scrollView_ = scrollView; }

private:
    bool focusNextPrevChild(bool next) override;

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

/// Shows an editor in a window of its own, which keeps itself alive.
void openEditor(const std::optional<AppShortcut>& editing, const EditorDraft& draft = {}) {
    const auto editor = AddEditShortcutSheet::make(editing);
    editor->onSave = [isNew = !editing](const AppShortcut& shortcut) {
        isNew ? ShortcutStore::shared().add(shortcut) : ShortcutStore::shared().update(shortcut);
    };
    editor->takeUp(draft);
    center(*editor);
    makeKeyAndOrderFront(*editor);
    platform::services().application.activateIgnoringOtherApps();
}

} // namespace

MainWindowController::MainWindowController() : window_(new ManagementWindow) {
    window_->resize(480, 400);
    window_->setWindowTitle(windowTitle());
    center(*window_);
    window_->setMinimumSize(400, 300);
    setupUI();
    reloadCards();
    auto& notifications = platform::services().notificationCenter;
    shortcutsObservation_ = notifications.observe(shortcutsDidChange, [this] { reloadCards(); });
    refusedObservation_ =
        notifications.observe(refusedCombinationsDidChange, [this] { reloadCards(); });
    languageObservation_ = notifications.observe(languageDidChange, [this] { relabel(); });
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
    if (HotkeyManager::shared().isRefused(shortcut)) {
        card->setNotice(
            localized("この組み合わせはデスクトップから渡されないため、働きません",
                      "The desktop does not hand this combination on, so it does not work"));
    }
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

void MainWindowController::addShortcut() {
    openEditor(std::nullopt);
}

void MainWindowController::editShortcut(const AppShortcut& shortcut) {
    openEditor(shortcut);
}

void MainWindowController::deleteShortcut(const AppShortcut& shortcut) {
    if (window_ == nullptr) {
        return;
    }
    const Alert question{
        .message = L10n::Main::deleteConfirmTitle(withoutDirections(shortcut.appName)),
        .informativeText = L10n::Main::deleteConfirmInfo(shortcut.displayString()),
        .buttons = {localized("削除", "Delete"), localized("キャンセル", "Cancel")}};
    question.beginSheet(*window_, [id = shortcut.id](int button) {
        if (button == 0) {
            ShortcutStore::shared().remove(id);
        }
    });
}

OpenWindows MainWindowController::openWindows() const {
    OpenWindows windows{.hasMainWindow = window_ != nullptr && window_->isVisible(), .editors = {}};
    const auto widgets = QApplication::topLevelWidgets();
    for (const auto* const widget : widgets) {
        const auto* const editor = dynamic_cast<const AddEditShortcutSheet*>(widget);
        if (editor != nullptr && editor->isVisible()) {
            windows.editors.push_back(editor->draft());
        }
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
        openEditor(edited == shortcuts.end() ? std::nullopt : std::optional(*edited), draft);
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
