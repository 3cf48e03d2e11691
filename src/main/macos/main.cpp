#include "app/AppDelegate.h"
#include "app/Language.h"
#include "main/Domains.h"
#include "main/ServicesHandOver.h"
#include "model/PreferencesMigration.h"
#include "platform/NotificationCenter.h"
#include "platform/macos/AccessibilityTrust.h"
#include "platform/macos/ApplicationBundles.h"
#include "platform/macos/EventTaps.h"
#include "platform/macos/FileManager.h"
#include "platform/macos/LoginItem.h"
#include "platform/macos/OwnWindows.h"
#include "platform/macos/RunningApplications.h"
#include "platform/macos/StatusBar.h"
#include "platform/macos/TextComparison.h"
#include "platform/macos/UserDefaults.h"
#include "platform/macos/Windows.h"
#include "platform/macos/Workspace.h"
#include "platform/qt/Application.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/ToolkitTexts.h"
#include "ui/icons/IconReader.h"

#include <QApplication>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>

namespace hollowfernpike {

namespace {

/// The running program: its services and its delegate. Needs a QApplication. Main thread only.
class Program {
public:
    /// The settings outlive this.
    explicit Program(platform::UserDefaults& userDefaults) : userDefaults_(userDefaults) {
        toolkitTexts_.setLanguage(Language::current().rawValue());
        application_.setDelegate(&delegate_);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() = default;

    int run() { return application_.run(); }

private:
    platform::UserDefaults& userDefaults_;
    qt::MainQueue mainQueue_;
    macos::OwnWindows ownWindows_;
    // From the first moment, or the Dock would show it until then.
    qt::Application application_{ownWindows_, platform::ActivationPolicy::accessory};
    macos::StatusBar statusBar_{application_};
    macos::AccessibilityTrust accessibilityTrust_;
    macos::ApplicationBundles applicationBundles_;
    macos::EventTaps eventTaps_;
    macos::FileManager fileManager_;
    macos::LoginItem loginItem_;
    macos::RunningApplications runningApplications_;
    macos::TextComparison textComparison_;
    macos::Windows windows_;
    macos::Workspace workspace_{mainQueue_};
    platform::NotificationCenter notificationCenter_;
    qt::ToolkitTexts toolkitTexts_;
    std::unique_ptr<platform::Subscription> languageObservation_ = notificationCenter_.observe(
        languageDidChange, [this] { toolkitTexts_.setLanguage(Language::current().rawValue()); });
    platform::Services services_{
        .accessibilityTrust = accessibilityTrust_,
        .application = application_,
        .applicationBundles = applicationBundles_,
        .eventTaps = eventTaps_,
        .fileManager = fileManager_,
        .loginItem = loginItem_,
        .mainQueue = mainQueue_,
        .notificationCenter = notificationCenter_,
        .runningApplications = runningApplications_,
        .statusBar = statusBar_,
        .textComparison = textComparison_,
        .userDefaults = userDefaults_,
        .windows = windows_,
        .workspace = workspace_,
        .standardOutput = std::cout,
    };
    ServicesHandOver servicesHandOver_{services_};
    AppDelegate delegate_{services_};
};

} // namespace

} // namespace hollowfernpike

// There is no look for an earlier instance, because the system opens a bundle once.
int main(int argc, char** argv) {
    using namespace hollowfernpike;
    macos::UserDefaults userDefaults;
    PreferencesMigration::run(userDefaults, previousDomains);
    QCoreApplication::setApplicationName("Hollowfernpike");
    QApplication application(argc, argv);
    const int status = Program(userDefaults).run();
    constexpr std::chrono::milliseconds patienceWithIcons{200};
    if (!stopReadingIcons(patienceWithIcons)) { // from a disk that does not answer
        std::_Exit(status);
    }
    return status;
}
