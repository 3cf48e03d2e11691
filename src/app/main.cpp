#include "app/AppDelegate.h"
#include "app/LateApplications.h"
#include "hotkeys/HotkeyManager.h"
#include "platform/NotificationCenter.h"
#include "platform/freedesktop/FileManager.h"
#include "platform/freedesktop/RunningApplications.h"
#include "platform/freedesktop/TextComparison.h"
#include "platform/freedesktop/WindowOwners.h"
#include "platform/freedesktop/Workspace.h"
#include "platform/qt/MainQueue.h"
#include "platform/qt/RunLoop.h"
#include "platform/qt/TerminationSignals.h"
#include "platform/x11/AccessibilityTrust.h"
#include "platform/x11/ClientWindows.h"
#include "platform/x11/Connection.h"
#include "platform/x11/EventTaps.h"
#include "platform/x11/LaunchFeedback.h"
#include "platform/x11/ProcessActivation.h"
#include "platform/x11/TrustMessage.h"
#include "platform/x11/WindowList.h"

#include <QCoreApplication>

#include <csignal>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

namespace hollowfernpike {
namespace {

/// Tells a lasting problem once, not with every retry.
class TrustPrompt {
public:
    void operator()(x11::TrustProblem problem) {
        if (std::exchange(told_, problem) != problem) {
            const auto message = x11::trustMessage(problem);
            std::cerr << message.japanese() << '\n' << message.english() << std::endl;
        }
    }

private:
    std::optional<x11::TrustProblem> told_;
};

/// The windows and applications of the display, over one connection.
class X11Applications {
public:
    X11Applications(std::unique_ptr<x11::Connection> connection, const x11::UserTime& userTime,
                    qt::MainQueue& mainQueue, qt::RunLoop& runLoop)
        : connection_(std::move(connection)), windows_(*connection_, owners_, userTime),
          clientWindows_(windows_, runLoop), launchFeedback_(windows_, userTime),
          processActivation_(windows_, userTime),
          workspace_(entries_, clientWindows_, launchFeedback_, processActivation_, runLoop,
                     mainQueue) {}

    const ApplicationServices& services() const { return services_; }

    /// Reads the installed applications and finds the owners of the open windows, so that the first
    /// key press does not pay for it.
    void prepare() { clientWindows_.clientWindows(); }

private:
    std::unique_ptr<x11::Connection> connection_;
    freedesktop::DesktopEntries entries_;
    freedesktop::WindowOwners owners_{entries_};
    x11::Windows windows_;
    x11::ClientWindows clientWindows_;
    x11::LaunchFeedback launchFeedback_;
    x11::ProcessActivation processActivation_;
    freedesktop::Workspace workspace_;
    x11::WindowList windowList_{windows_};
    freedesktop::RunningApplications runningApplications_{entries_, clientWindows_, workspace_};
    ApplicationServices services_{
        .processActivation = processActivation_,
        .runningApplications = runningApplications_,
        .windowList = windowList_,
        .workspace = workspace_,
    };
};

/// The program from its start to its end, on an X11 desktop.
class Program {
public:
    Program() { platform::setServices(&services_); }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() { platform::setServices(nullptr); }

    void start() {
        delegate_.applicationDidFinishLaunching();
        if (HotkeyManager::shared().eventTap() != nullptr) {
            mainQueue_.async([this] {
                if (auto* applications = this->applications()) {
                    applications->prepare();
                }
            });
        }
    }

    void terminate() { delegate_.applicationWillTerminate(); }

    qt::RunLoop& runLoop() { return runLoop_; }

private:
    X11Applications* applications() {
        if (!applications_) {
            if (auto connection = x11::Connection::open()) {
                applications_.emplace(std::move(connection), userTime_, mainQueue_, runLoop_);
            }
        }
        return applications_ ? &*applications_ : nullptr;
    }

    const ApplicationServices* applicationServices() {
        const auto* found = applications();
        return found == nullptr ? nullptr : &found->services();
    }

    qt::MainQueue mainQueue_;
    qt::RunLoop runLoop_;
    x11::UserTime userTime_;
    x11::AccessibilityTrust trust_{TrustPrompt{}};
    x11::EventTaps eventTaps_{mainQueue_, userTime_, {}, [] { QCoreApplication::quit(); }};
    freedesktop::FileManager fileManager_;
    freedesktop::TextComparison textComparison_;
    platform::NotificationCenter notificationCenter_;
    std::optional<X11Applications> applications_;
    LateApplications lateApplications_{[this] { return applicationServices(); }};
    platform::Services services_{
        .accessibilityTrust = trust_,
        .eventTaps = eventTaps_,
        .fileManager = fileManager_,
        .mainQueue = mainQueue_,
        .notificationCenter = notificationCenter_,
        .processActivation = lateApplications_,
        .runningApplications = lateApplications_,
        .textComparison = textComparison_,
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

int run(int argumentCount, char** arguments) {
    ignoreSignals();
    QCoreApplication application(argumentCount, arguments);
    qt::TerminationSignals terminationSignals;
    Program program;
    terminationSignals.watch(program.runLoop(), [] { QCoreApplication::quit(); });
    program.start();
    const int status = QCoreApplication::exec();
    program.terminate();
    return status;
}

} // namespace
} // namespace hollowfernpike

int main(int argc, char** argv) {
    return hollowfernpike::run(argc, argv);
}
