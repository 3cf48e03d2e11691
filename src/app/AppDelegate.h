#pragma once

#include "platform/Application.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"
#include "platform/StatusBar.h"

#include <memory>
#include <string_view>

namespace hollowfernpike {

class MainWindowController;

/// Starts the utility when the application object is ready, owns its status item and menu, answers
/// to the menu's actions, and takes the utility down before it ends. Closing the last window does
/// not end it. Lives for the whole run. Main thread only.
class AppDelegate final : public platform::ApplicationDelegate {
public:
    explicit AppDelegate(const platform::Services& services);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    ~AppDelegate() override;

    /// Asks for the permission to see key presses, brings the combinations to life, then shows the
    /// status item.
    void applicationDidFinishLaunching() override;

    /// Gives back everything held of the desktop.
    void applicationWillTerminate() override;

    /// The actions of the menu, by the names of the functions below. While a dialog waits for its
    /// answer it comes to the front instead; only quitting does not wait.
    void performAction(std::string_view action, const platform::MenuItem* sender) override;

    /// Shows the one management window, made on first use and kept from then on.
    void openMainWindow();

    void exportShortcuts();
    void importShortcuts();

    /// Switches to the language that the item represents; does nothing if it represents none.
    void changeLanguage(const platform::MenuItem* sender);

    void toggleLaunchAtLogin();
    void quitApp();

private:
    void setupStatusItem();
    void rebuildMenu();
    platform::Menu languageMenu();
    void shortcutsDidChange();
    void languageDidChange();

    const platform::Services& services_;
    std::unique_ptr<platform::StatusItem> statusItem_;
    std::shared_ptr<platform::MenuItem> launchAtLoginItem_; ///< of the menu built last
    std::unique_ptr<MainWindowController> mainWindowController_;
    std::unique_ptr<platform::Subscription> shortcutsObservation_;
    std::unique_ptr<platform::Subscription> languageObservation_;
};

} // namespace hollowfernpike
