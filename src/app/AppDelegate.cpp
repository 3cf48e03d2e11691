#include "app/AppDelegate.h"

#include "app/Language.h"
#include "app/LaunchAtLogin.h"
#include "hotkeys/AppLauncher.h"
#include "hotkeys/HotkeyManager.h"
#include "model/ShortcutStore.h"
#include "platform/AccessibilityTrust.h"
#include "platform/FatalError.h"
#include "platform/NotificationCenter.h"
#include "ui/exchange/ShortcutExchange.h"
#include "ui/parts/Alert.h"
#include "ui/window/MainWindowController.h"

#include <utility>

namespace hollowfernpike {

namespace {

using platform::MenuItem;
using platform::MenuItemPointer;

MenuItemPointer menuItem(std::string_view title, std::string_view action,
                         platform::ActionTarget* target = nullptr) {
    auto item = std::make_shared<MenuItem>();
    item->title = title;
    item->action = action;
    item->target = target;
    return item;
}

MenuItemPointer separatorItem() {
    auto item = std::make_shared<MenuItem>();
    item->isSeparator = true;
    return item;
}

std::string_view nameOf(Language language) {
    return language == Language::english ? "English" : "日本語";
}

// Not modal: a change may come while the desktop waits for us.
void tellThatNothingWasSaved() {
    const auto& failure = ShortcutStore::shared().saveFailure();
    const std::string reason = localized(failure->japanese(), failure->english());
    Alert{.message = localized("変更を保存できませんでした。", "The change could not be saved."),
          .informativeText = reason + "\n\n" +
                             localized("この変更はプログラムの終了時に失われます。",
                                       "It lasts until the program ends.")}
        .show();
}

} // namespace

AppDelegate::AppDelegate(const platform::Services& services) : services_(services) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    services_.accessibilityTrust.isProcessTrustedWithPrompt();
    AppLauncher::shared(); // made now, so that the first key press need not
    auto& center = services_.notificationCenter;
    shortcutsObservation_ =
        center.observe(shortcutsDidChange, [] { HotkeyManager::shared().buildShortcutMap(); });
    saveObservation_ = center.observe(shortcutsWereNotSaved, tellThatNothingWasSaved);
    languageObservation_ = center.observe(languageDidChange, [this] { rebuildMenu(); });
    HotkeyManager::shared().start();
    setupStatusItem();
}

void AppDelegate::applicationWillTerminate() {
    HotkeyManager::shared().stop();
}

void AppDelegate::performAction(std::string_view action, const MenuItem* sender) {
    using Action = void (AppDelegate::*)();
    static constexpr std::pair<std::string_view, Action> actions[] = {
        {"openMainWindow", &AppDelegate::openMainWindow},
        {"exportShortcuts", &AppDelegate::exportShortcuts},
        {"importShortcuts", &AppDelegate::importShortcuts},
        {"toggleLaunchAtLogin", &AppDelegate::toggleLaunchAtLogin},
        {"quitApp", &AppDelegate::quitApp},
    };
    if (services_.application.hasModalWindow() && action != "quitApp") {
        services_.application.activateIgnoringOtherApps();
        return;
    }
    for (const auto& [name, function] : actions) {
        if (name == action) {
            (this->*function)();
        }
    }
    if (action == "changeLanguage") {
        changeLanguage(sender);
    }
}

void AppDelegate::openMainWindow() {
    mainWindowController().showWindow();
    services_.application.activateIgnoringOtherApps();
}

std::string AppDelegate::openWindows() const {
    return (mainWindowController_ ? mainWindowController_->openWindows() : OpenWindows{}).text();
}

void AppDelegate::reopenWindows(std::string_view text) {
    const auto windows = OpenWindows::parse(text);
    if (windows.hasMainWindow || !windows.editors.empty()) {
        mainWindowController().reopen(windows);
    }
}

void AppDelegate::exportShortcuts() {
    ShortcutExchange::exportShortcuts(ExchangePresentation::modal());
}

void AppDelegate::importShortcuts() {
    ShortcutExchange::importShortcuts(ExchangePresentation::modal());
}

void AppDelegate::changeLanguage(const MenuItem* sender) {
    if (sender == nullptr) {
        return;
    }
    if (const auto* language = std::any_cast<Language>(&sender->representedObject)) {
        Language::setCurrent(*language);
    }
}

void AppDelegate::toggleLaunchAtLogin() {
    LaunchAtLogin::toggle();
    if (!statusItem_ || !launchAtLoginItem_) {
        platform::fatalError("the login item was toggled before its menu was built");
    }
    launchAtLoginItem_->isOn = LaunchAtLogin::isEnabled();
    statusItem_->menuItemDidChange(*launchAtLoginItem_);
}

void AppDelegate::quitApp() {
    services_.application.terminate();
}

MainWindowController& AppDelegate::mainWindowController() {
    if (!mainWindowController_) {
        mainWindowController_ = std::make_unique<MainWindowController>();
    }
    return *mainWindowController_;
}

void AppDelegate::setupStatusItem() {
    statusItem_ = services_.statusBar.createStatusItem();
    statusItem_->setImage("keyboard", "Hollowfernpike");
    rebuildMenu();
}

void AppDelegate::rebuildMenu() {
    auto language = menuItem("言語 / Language", "");
    language->submenu = languageMenu();
    launchAtLoginItem_ =
        menuItem(localized("ログイン時に起動", "Launch at Login"), "toggleLaunchAtLogin");
    launchAtLoginItem_->isOn = LaunchAtLogin::isEnabled();
    auto quit = menuItem(localized("終了", "Quit"), "quitApp");
    quit->keyEquivalent = 'q';

    if (!statusItem_) {
        platform::fatalError("a menu was built before the status item that shows it");
    }
    statusItem_->setMenu({
        menuItem(localized("ショートカット管理", "Manage Shortcuts"), "openMainWindow"),
        menuItem(localized("ショートカットをエクスポート...", "Export Shortcuts..."),
                 "exportShortcuts", this),
        menuItem(localized("ショートカットをインポート...", "Import Shortcuts..."),
                 "importShortcuts", this),
        separatorItem(),
        language,
        launchAtLoginItem_,
        separatorItem(),
        quit,
    });
}

platform::Menu AppDelegate::languageMenu() {
    platform::Menu menu;
    for (const Language language : Language::allCases) {
        auto item = menuItem(nameOf(language), "changeLanguage", this);
        item->representedObject = language;
        item->isOn = language == Language::current();
        item->isChoice = true;
        menu.push_back(std::move(item));
    }
    return menu;
}

} // namespace hollowfernpike
