#pragma once

#include "platform/Application.h"
#include "platform/RunLoop.h"
#include "platform/Services.h"
#include "platform/StatusBar.h"

#include <memory>
#include <string>
#include <string_view>

namespace hollowfernpike {

class MainWindowController;

/// Starts the utility when the application object is ready, owns its status item and menu, performs
/// the menu's actions, and stops the utility before the process ends. Closing the last window does
/// not end the utility. Lives for the whole run. Main thread only.
class AppDelegate final : public platform::ApplicationDelegate {
public:
    explicit AppDelegate(const platform::Services& services);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    ~AppDelegate() override;

    /// Asks for the permission to see key presses, starts watching for the combinations, then shows
    /// the status item.
    void applicationDidFinishLaunching() override;

    /// Gives back everything held of the desktop.
    void applicationWillTerminate() override;

    /// Performs an action of the menu, named like one of the functions below. While a modal dialog
    /// is open, brings it to the front instead; only quitApp is performed even then.
    void performAction(std::string_view action, const platform::MenuItem* sender) override;

    /// Shows the one management window, made on first use and kept from then on.
    void openMainWindow();

    /// What reopenWindows() of a later run needs to open the windows that are open now.
    std::string openWindows() const;
    void reopenWindows(std::string_view text);

    void exportShortcuts();
    void importShortcuts();

    /// Switches to the language that the item represents; does nothing if it represents none.
    void changeLanguage(const platform::MenuItem* sender);

    void toggleLaunchAtLogin();
    void quitApp();

private:
    MainWindowController& mainWindowController();
    void setupStatusItem();
    void rebuildMenu();
    platform::Menu languageMenu();

    const platform::Services& services_;
    std::unique_ptr<platform::StatusItem> statusItem_;
    std::shared_ptr<platform::MenuItem> launchAtLoginItem_; ///< of the menu built last
    std::unique_ptr<MainWindowController> mainWindowController_;
    std::unique_ptr<platform::Subscription> shortcutsObservation_;
    std::unique_ptr<platform::Subscription> saveObservation_;
    std::unique_ptr<platform::Subscription> languageObservation_;
};

} // namespace hollowfernpike
