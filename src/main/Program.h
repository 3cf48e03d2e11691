#pragma once

#include "app/AppDelegate.h"
#include "app/Language.h"
#include "main/BindingsReminder.h"
#include "main/ServicesHandOver.h"
#include "main/TrustPrompt.h"
#include "model/ShortcutStore.h"
#include "platform/Desktop.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "platform/freedesktop/TextComparison.h"
#include "platform/freedesktop/autostart/LoginItem.h"
#include "platform/freedesktop/bus/ScreenLock.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/entries/ApplicationBundles.h"
#include "platform/freedesktop/files/FileManager.h"
#include "platform/freedesktop/instance/InstanceRequest.h"
#include "platform/freedesktop/launching/Workspace.h"
#include "platform/freedesktop/owners/RunningApplications.h"
#include "platform/freedesktop/owners/WindowOwners.h"
#include "platform/qt/Application.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "platform/qt/TerminationSignals.h"
#include "platform/qt/ToolkitTexts.h"
#include "platform/qt/UserDefaults.h"
#include "platform/qt/status/StatusBar.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include <QCoreApplication>

namespace hollowfernpike {

/// The action of a start that names none.
inline constexpr auto defaultAction = "openMainWindow";

/// The action of a command that stands for a press; its parameter is the combination.
inline constexpr auto pressAction = "press";

/// The running program: its services and its delegate. Needs a QApplication. Main thread only.
class Program {
public:
    /// All arguments but `desktop` outlive this. `bus` is null where there is none. `openWindows`
    /// is what the run before a restart has told.
    Program(platform::FoundDesktop& desktop, platform::UserDefaults& userDefaults,
            qt::TerminationSignals& terminationSignals, freedesktop::SessionBus* bus,
            std::string openWindows);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() = default;

    platform::RunLoop& runLoop() { return runLoop_; }

    /// Performs a request from outside, by a launcher or another start of the program. Returns
    /// before it is done, because it may open a dialog that blocks.
    void perform(const freedesktop::InstanceRequest& request);

    /// Whether an application is bound to the combination.
    static bool isBound(const platform::KeyCombination& combination);

    /// False for a press that nothing is bound to.
    static bool canPerform(const freedesktop::InstanceRequest& request);

    /// Performs `request` if there is one, opens the windows of the run before a restart, handles
    /// events to the end, returns the exit status.
    int run(const std::optional<freedesktop::InstanceRequest>& request);

private:
    platform::DesktopHost desktopHost();
    platform::Services makeServices(platform::UserDefaults& userDefaults);
    std::string purposeOf(const platform::KeyCombination& combination) const;
    static bool reassign(const platform::KeyCombination& from, const platform::KeyCombination& to);
    void press(const freedesktop::InstanceRequest& request);
    void languageDidChange();
    void restart();
    void knowApplications();
    void useStartupIdentifier(const std::string& identifier);
    static bool isLive();

    qt::MainQueue mainQueue_;
    qt::RunLoop runLoop_;
    freedesktop::DesktopEntries entries_;
    freedesktop::WindowOwners windowOwners_{entries_};
    freedesktop::SessionBus* bus_;
    freedesktop::ScreenLock screenLock_{bus_};
    std::optional<std::string> windowsToReopen_;
    bool isEnding_ = false;
    std::unique_ptr<platform::Desktop> desktop_;
    qt::Application application_{desktop_->ownWindows()};
    qt::StatusBar statusBar_{application_, desktop_->systemTray(), bus_};
    TrustPrompt trustPrompt_{*desktop_};
    freedesktop::ProcessTable processes_{entries_};
    freedesktop::Workspace workspace_{
        entries_, processes_, desktop_->windows(), desktop_->launchFeedback(),
        bus_,     runLoop_,   mainQueue_};
    freedesktop::RunningApplications runningApplications_{entries_, processes_, desktop_->windows(),
                                                          workspace_};
    freedesktop::FileManager fileManager_;
    freedesktop::LoginItem loginItem_{QCoreApplication::applicationFilePath().toStdString()};
    freedesktop::ApplicationBundles applicationBundles_{entries_};
    freedesktop::TextComparison textComparison_;
    platform::NotificationCenter notificationCenter_;
    BindingsReminder bindingsReminder_;
    qt::ToolkitTexts toolkitTexts_;
    std::unique_ptr<platform::Subscription> languageObservation_ = notificationCenter_.observe(
        hollowfernpike::languageDidChange, [this] { languageDidChange(); });
    std::unique_ptr<platform::Subscription> shortcutsObservation_ =
        notificationCenter_.observe(shortcutsDidChange, [this] { bindingsReminder_.update(); });
    platform::Services services_;
    ServicesHandOver servicesHandOver_{services_};
    AppDelegate delegate_{services_};
};

} // namespace hollowfernpike
