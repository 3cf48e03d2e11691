#pragma once

#include "app/AppDelegate.h"
#include "app/Language.h"
#include "app/LateApplications.h"
#include "main/TrustPrompt.h"
#include "main/X11Applications.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "platform/freedesktop/ApplicationBundles.h"
#include "platform/freedesktop/FileManager.h"
#include "platform/freedesktop/LoginItem.h"
#include "platform/freedesktop/SessionBus.h"
#include "platform/freedesktop/TextComparison.h"
#include "platform/qt/Application.h"
#include "platform/qt/BusConnection.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "platform/qt/StatusBar.h"
#include "platform/qt/TerminationSignals.h"
#include "platform/qt/ToolkitTexts.h"
#include "platform/qt/UserDefaults.h"
#include "platform/x11/AccessibilityTrust.h"
#include "platform/x11/EventTaps.h"
#include "platform/x11/OwnWindows.h"
#include "platform/x11/SystemTray.h"

#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include <QApplication>

namespace hollowfernpike {

/// What a launcher asks for that asks for nothing in particular.
inline constexpr auto defaultAction = "openMainWindow";

/// Hands the services over for as long as it lives.
class ServicesHandOver {
public:
    explicit ServicesHandOver(const platform::Services& services) {
        platform::setServices(&services);
    }
    ServicesHandOver(const ServicesHandOver&) = delete;
    ServicesHandOver& operator=(const ServicesHandOver&) = delete;
    ~ServicesHandOver() { platform::setServices(nullptr); }
};

/// The program from its start to its end, on an X11 desktop: every service has its backend here.
/// Made when there is a QApplication. Main thread only.
class Program {
public:
    /// Both outlive this.
    Program(platform::UserDefaults& userDefaults, qt::TerminationSignals& terminationSignals);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() = default;

    platform::RunLoop& runLoop() { return runLoop_; }

    /// Null where there is no session bus.
    const qt::BusConnection* bus() const { return bus_.get(); }

    /// What was asked for from outside, by a launcher or another start of the program.
    /// Returns before it is done: dialogs may last.
    void perform(const std::string& action, const std::string& startupIdentifier);

    /// Performs the action, if there is one, and everything that comes; returns the exit status.
    int run(const std::string& action);

private:
    /// The toolkit's own, which lives as long as the QApplication.
    static xcb_connection_t* toolkitConnection();

    void prepare();

    /// Whether the desktop trusts us, and can be reached.
    bool isLive();
    X11Applications* applications();
    const ApplicationServices* applicationServices();

    platform::UserDefaults& userDefaults_;
    qt::MainQueue mainQueue_;
    qt::RunLoop runLoop_;
    x11::OwnWindows ownWindows_{toolkitConnection()};
    qt::Application application_{{
        .setShownInTaskBar =
            [this](std::uintptr_t window, bool shown) {
                ownWindows_.setShownInTaskBar(static_cast<xcb_window_t>(window), shown);
            },
        .bringToFront =
            [this](std::uintptr_t window) {
                ownWindows_.bringToFront(static_cast<xcb_window_t>(window));
            },
    }};
    x11::SystemTray systemTray_{toolkitConnection(), runLoop_};
    std::unique_ptr<qt::BusConnection> bus_ =
        freedesktop::SessionBus::isKnown() ? std::make_unique<qt::BusConnection>() : nullptr;
    qt::StatusBar statusBar_{application_, systemTray_, bus_.get()};
    x11::UserTime userTime_;
    TrustPrompt trustPrompt_;
    x11::AccessibilityTrust trust_{
        [this](x11::TrustProblem problem) { trustPrompt_.show(problem); },
        {},
        [this] { trustPrompt_.close(); }};
    x11::EventTaps eventTaps_{mainQueue_, userTime_, {}, [this] { application_.terminate(); }};
    freedesktop::FileManager fileManager_;
    freedesktop::LoginItem loginItem_{QCoreApplication::applicationFilePath().toStdString()};
    freedesktop::DesktopEntries entries_;
    freedesktop::ApplicationBundles applicationBundles_{entries_};
    freedesktop::TextComparison textComparison_;
    platform::NotificationCenter notificationCenter_;
    qt::ToolkitTexts toolkitTexts_;
    std::unique_ptr<platform::Subscription> languageObservation_ = notificationCenter_.observe(
        languageDidChange, [this] { toolkitTexts_.setLanguage(Language::current().rawValue()); });
    std::optional<X11Applications> applications_;
    LateApplications lateApplications_{[this] { return applicationServices(); }};
    platform::Services services_{
        .accessibilityTrust = trust_,
        .application = application_,
        .applicationBundles = applicationBundles_,
        .eventTaps = eventTaps_,
        .fileManager = fileManager_,
        .loginItem = loginItem_,
        .mainQueue = mainQueue_,
        .notificationCenter = notificationCenter_,
        .processActivation = lateApplications_,
        .runningApplications = lateApplications_,
        .statusBar = statusBar_,
        .textComparison = textComparison_,
        .userDefaults = userDefaults_,
        .windowList = lateApplications_,
        .workspace = lateApplications_,
        .standardOutput = std::cout,
    };
    ServicesHandOver servicesHandOver_{services_};
    AppDelegate delegate_{services_};
};

} // namespace hollowfernpike
