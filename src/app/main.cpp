#include "app/AppDelegate.h"
#include "app/Language.h"
#include "app/LateApplications.h"
#include "hotkeys/HotkeyManager.h"
#include "model/PreferencesMigration.h"
#include "platform/NotificationCenter.h"
#include "platform/freedesktop/ApplicationBundles.h"
#include "platform/freedesktop/FileManager.h"
#include "platform/freedesktop/LoginItem.h"
#include "platform/freedesktop/RunningApplications.h"
#include "platform/freedesktop/SessionBus.h"
#include "platform/freedesktop/TextComparison.h"
#include "platform/freedesktop/WindowOwners.h"
#include "platform/freedesktop/Workspace.h"
#include "platform/qt/Application.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "platform/qt/StatusBar.h"
#include "platform/qt/TerminationSignals.h"
#include "platform/qt/UserDefaults.h"
#include "platform/x11/AccessibilityTrust.h"
#include "platform/x11/ClientWindows.h"
#include "platform/x11/Connection.h"
#include "platform/x11/EventTaps.h"
#include "platform/x11/LaunchFeedback.h"
#include "platform/x11/OwnWindows.h"
#include "platform/x11/ProcessActivation.h"
#include "platform/x11/SystemTray.h"
#include "platform/x11/TrustMessage.h"
#include "platform/x11/WindowList.h"
#include "ui/PermissionPrompt.h"

#include <QApplication>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace hollowfernpike {
namespace {

constexpr std::string_view domain = "app.hollowfernpike.Hollowfernpike";
constexpr std::string_view previousDomains[] = {"com.local.Hollowfernpike"};

/// Tells what keeps us from the keys: in a window as often as asked, and once on standard error.
class TrustPrompt {
public:
    void show(x11::TrustProblem problem) {
        const auto message = x11::trustMessage(problem);
        if (std::exchange(told_, problem) != problem) {
            std::cerr << message.japanese() << '\n' << message.english() << std::endl;
        }
        window_.show(message);
    }

    void close() { window_.close(); }

private:
    std::optional<x11::TrustProblem> told_;
    PermissionPrompt window_;
};

/// The toolkit's own connection, which lives as long as the QApplication.
xcb_connection_t* toolkitConnection() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

/// The windows and applications of the display, over one connection.
class X11Applications {
public:
    X11Applications(std::unique_ptr<x11::Connection> connection,
                    freedesktop::DesktopEntries& entries, const x11::UserTime& userTime,
                    qt::MainQueue& mainQueue, qt::RunLoop& runLoop)
        : connection_(std::move(connection)), owners_(entries),
          windows_(*connection_, owners_, userTime), clientWindows_(windows_, runLoop),
          launchFeedback_(windows_, userTime), processActivation_(windows_, userTime),
          workspace_(entries, clientWindows_, launchFeedback_, processActivation_, runLoop,
                     mainQueue),
          runningApplications_(entries, clientWindows_, workspace_) {}

    const ApplicationServices& services() const { return services_; }

    /// Reads the installed applications and finds the owners of the open windows, so that the first
    /// key press does not pay for it.
    void prepare() { clientWindows_.clientWindows(); }

private:
    std::unique_ptr<x11::Connection> connection_;
    freedesktop::WindowOwners owners_;
    x11::Windows windows_;
    x11::ClientWindows clientWindows_;
    x11::LaunchFeedback launchFeedback_;
    x11::ProcessActivation processActivation_;
    freedesktop::Workspace workspace_;
    x11::WindowList windowList_{windows_};
    freedesktop::RunningApplications runningApplications_;
    ApplicationServices services_{
        .processActivation = processActivation_,
        .runningApplications = runningApplications_,
        .windowList = windowList_,
        .workspace = workspace_,
    };
};

/// The program from its start to its end, on an X11 desktop. Made when there is a QApplication.
class Program {
public:
    Program(platform::UserDefaults& userDefaults, qt::TerminationSignals& terminationSignals)
        : userDefaults_(userDefaults) {
        platform::setServices(&services_);
        application_.setDelegate(&delegate_);
        application_.setActivationPolicy(platform::ActivationPolicy::accessory);
        terminationSignals.watch(runLoop_, [this] { application_.terminate(); });
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { platform::setServices(nullptr); }

    int run() {
        mainQueue_.async([this] { prepare(); });
        return application_.run();
    }

private:
    void prepare() {
        if (HotkeyManager::shared().eventTap() == nullptr) {
            return;
        }
        if (auto* applications = this->applications()) {
            applications->prepare();
        }
    }

    X11Applications* applications() {
        if (!applications_) {
            if (auto connection = x11::Connection::open()) {
                applications_.emplace(std::move(connection), entries_, userTime_, mainQueue_,
                                      runLoop_);
            }
        }
        return applications_ ? &*applications_ : nullptr;
    }

    const ApplicationServices* applicationServices() {
        const auto* found = applications();
        return found == nullptr ? nullptr : &found->services();
    }

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
    qt::StatusBar statusBar_{application_, systemTray_, freedesktop::SessionBus::isKnown()};
    x11::UserTime userTime_;
    TrustPrompt trustPrompt_;
    x11::AccessibilityTrust trust_{
        [this](x11::TrustProblem problem) { trustPrompt_.show(problem); },
        [this] { trustPrompt_.close(); }};
    x11::EventTaps eventTaps_{mainQueue_, userTime_, {}, [this] { application_.terminate(); }};
    freedesktop::FileManager fileManager_;
    freedesktop::LoginItem loginItem_{QCoreApplication::applicationFilePath().toStdString()};
    freedesktop::DesktopEntries entries_;
    freedesktop::ApplicationBundles applicationBundles_{entries_};
    freedesktop::TextComparison textComparison_;
    platform::NotificationCenter notificationCenter_;
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
    AppDelegate delegate_{services_};
};

/// A reader of our diagnostics may go away at any time; and a utility that a terminal has stopped
/// would hold the keyboard at the next bound key press.
void ignoreSignals() {
    for (const int number : {SIGPIPE, SIGTSTP, SIGTTIN, SIGTTOU}) {
        std::signal(number, SIG_IGN);
    }
}

/// The toolkit would abort without a display.
bool displayIsThere() {
    if (x11::Connection::open() != nullptr) {
        return true;
    }
    const auto message = x11::trustMessage(x11::TrustProblem::noDisplay);
    std::cerr << message.japanese() << '\n' << message.english() << std::endl;
    return false;
}

int run(int argumentCount, char** arguments) {
    ignoreSignals();
    if (!displayIsThere()) {
        return EXIT_FAILURE;
    }
    qt::UserDefaults userDefaults(domain);
    PreferencesMigration::run(userDefaults, previousDomains);
    qputenv("QT_QPA_PLATFORM", "xcb"); // in a Wayland session, too: our windows are X windows
    qt::TerminationSignals terminationSignals;
    QCoreApplication::setApplicationName("Hollowfernpike");
    QGuiApplication::setDesktopFileName(domain.data());
    QApplication application(argumentCount, arguments);
    Program program(userDefaults, terminationSignals);
    return program.run();
}

} // namespace
} // namespace hollowfernpike

int main(int argc, char** argv) {
    return hollowfernpike::run(argc, argv);
}
