#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/Language.h"
#include "app/LateApplications.h"
#include "hotkeys/HotkeyManager.h"
#include "model/PreferencesMigration.h"
#include "platform/NotificationCenter.h"
#include "platform/freedesktop/ApplicationBundles.h"
#include "platform/freedesktop/CoreLimit.h"
#include "platform/freedesktop/FileManager.h"
#include "platform/freedesktop/InstanceLock.h"
#include "platform/freedesktop/LoginItem.h"
#include "platform/freedesktop/RunningApplications.h"
#include "platform/freedesktop/SessionBus.h"
#include "platform/freedesktop/TextComparison.h"
#include "platform/freedesktop/WindowOwners.h"
#include "platform/freedesktop/Workspace.h"
#include "platform/qt/Application.h"
#include "platform/qt/ApplicationService.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "platform/qt/StatusBar.h"
#include "platform/qt/TerminationSignals.h"
#include "platform/qt/ToolkitTexts.h"
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

#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace hollowfernpike {
namespace {

constexpr std::string_view domain = "app.hollowfernpike.Hollowfernpike";
constexpr auto lockName = "hollowfernpike";
constexpr auto defaultAction = "openMainWindow";
constexpr std::string_view previousDomains[] = {"com.local.Hollowfernpike"};

void tell(const platform::LocalizedError& message) {
    std::cerr << message.japanese() << '\n' << message.english() << std::endl;
}

/// Tells what keeps us from the keys: in a window as often as asked, and once on standard error.
class TrustPrompt {
public:
    void show(x11::TrustProblem problem) {
        const auto message = x11::trustMessage(problem);
        if (std::exchange(told_, problem) != problem) {
            tell(message);
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

    void endStartup(const std::string& identifier) { launchFeedback_.end(identifier); }

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
        toolkitTexts_.setLanguage(Language::current().rawValue());
        application_.setDelegate(&delegate_);
        application_.setActivationPolicy(platform::ActivationPolicy::accessory);
        terminationSignals.watch(runLoop_, [this] { application_.terminate(); });
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { platform::setServices(nullptr); }

    platform::RunLoop& runLoop() { return runLoop_; }

    /// What was asked for from outside, by a launcher or another start of the program.
    /// Returns before it is done: dialogs may last.
    void perform(const std::string& action, const std::string& startupIdentifier) {
        mainQueue_.async([this, action, startupIdentifier] {
            if (!startupIdentifier.empty() && isLive()) {
                applications()->endStartup(startupIdentifier);
            }
            application_.performAction(action.empty() ? defaultAction : action);
        });
    }

    int run(const std::string& action) {
        mainQueue_.async([this] { prepare(); });
        if (!action.empty()) {
            perform(action, {});
        }
        return application_.run();
    }

private:
    void prepare() {
        if (isLive()) {
            applications()->prepare();
        }
    }

    /// Whether the desktop trusts us, and can be reached.
    bool isLive() {
        return HotkeyManager::shared().eventTap() != nullptr && applications() != nullptr;
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
    AppDelegate delegate_{services_};
};

/// A reader of our diagnostics may go away at any time; and a utility that a terminal has stopped
/// would hold the keyboard at the next bound key press.
void ignoreSignals() {
    for (const int number : {SIGPIPE, SIGTSTP, SIGTTIN, SIGTTOU}) {
        std::signal(number, SIG_IGN);
    }
}

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string{} : value;
}

freedesktop::InstanceRequest requestFor(const std::string& action) {
    return {.action = action.empty() ? defaultAction : action,
            .activationToken = variable("XDG_ACTIVATION_TOKEN"),
            .startupId = variable("DESKTOP_STARTUP_ID")};
}

/// The lock, once no other instance has it; absent if another one has taken over what we were
/// started for.
std::optional<freedesktop::InstanceLock> becomeTheInstance(const std::string& action) {
    if (auto lock = freedesktop::InstanceLock::acquire(lockName)) {
        return lock;
    }
    auto handedOver = freedesktop::handOver(lockName, requestFor(action));
    if (!handedOver.lock && !handedOver.isTaken) {
        throw platform::LocalizedError("起動中の Hollowfernpike が応答しません",
                                       "Hollowfernpike is running but does not answer");
    }
    return std::move(handedOver.lock);
}

/// What the toolkit is told as if on its command line: in a Wayland session, too, our windows are X
/// windows. In the environment, those whom we launch would be told as well.
struct ToolkitArguments {
    std::string program;
    std::string option = "-platform";
    std::string platform = "xcb";
    std::array<char*, 4> words{program.data(), option.data(), platform.data(), nullptr};
    int count = 3;
};

int runInstance(freedesktop::InstanceLock lock, const std::string& action,
                const std::string& command) {
    qt::UserDefaults userDefaults(domain);
    PreferencesMigration::run(userDefaults, previousDomains);
    const auto startupIdentifier = variable("DESKTOP_STARTUP_ID"); // the toolkit takes it away
    qt::TerminationSignals terminationSignals;
    QCoreApplication::setApplicationName("Hollowfernpike");
    QGuiApplication::setDesktopFileName(domain.data());
    ToolkitArguments arguments{.program = command};
    QApplication application(arguments.count, arguments.words.data());
    Program program(userDefaults, terminationSignals);
    qt::ApplicationService service(domain, [&program](const qt::ApplicationRequest& asked) {
        program.perform(asked.action, asked.startupIdentifier);
    });
    if (service.publish() == qt::ApplicationService::Outcome::taken &&
        service.handOver({.action = action, .startupIdentifier = startupIdentifier})) {
        return EXIT_SUCCESS;
    }
    lock.listen(program.runLoop(), [&program](const freedesktop::InstanceRequest& asked) {
        program.perform(asked.action, asked.startupId);
    });
    return program.run(action);
}

int run(const std::string& action, const std::string& command) {
    ignoreSignals();
    freedesktop::turnOffCoreFiles();
    if (x11::Connection::open() == nullptr) { // the toolkit would abort
        tell(x11::trustMessage(x11::TrustProblem::noDisplay));
        return EXIT_FAILURE;
    }
    try {
        auto lock = becomeTheInstance(action);
        if (!lock || action == "quitApp") {
            return EXIT_SUCCESS;
        }
        return runInstance(std::move(*lock), action, command);
    } catch (const platform::LocalizedError& error) {
        tell(error);
        return EXIT_FAILURE;
    }
}

} // namespace
} // namespace hollowfernpike

int main(int argc, char** argv) {
    using hollowfernpike::CommandLine;
    const auto line = hollowfernpike::parseCommandLine(
        std::span<const char* const>(argv, static_cast<std::size_t>(argc)).subspan(1));
    switch (line.purpose) {
    case CommandLine::Purpose::run:
        return hollowfernpike::run(line.action, argv[0]);
    case CommandLine::Purpose::help:
        std::cout << hollowfernpike::usage();
        return EXIT_SUCCESS;
    case CommandLine::Purpose::version:
        std::cout << "hollowfernpike " HOLLOWFERNPIKE_VERSION "\n";
        return EXIT_SUCCESS;
    case CommandLine::Purpose::misuse:
        std::cerr << hollowfernpike::usage();
        return 2;
    }
}
