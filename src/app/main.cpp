#include "app/AppDelegate.h"
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
#include "platform/x11/EventTaps.h"
#include "platform/x11/LaunchFeedback.h"
#include "platform/x11/ProcessActivation.h"
#include "platform/x11/TrustMessage.h"
#include "platform/x11/WindowList.h"

#include <QCoreApplication>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>

namespace hollowfernpike {
namespace {

using namespace std::chrono_literals;

/// How often an absent display is looked for.
constexpr auto displayRetryInterval = 5s;

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

/// What the utility needs of a desktop that runs on X11, in the order in which it is built up.
class X11Desktop {
public:
    X11Desktop(std::unique_ptr<x11::Connection> connection, qt::MainQueue& mainQueue,
               qt::RunLoop& runLoop, x11::AccessibilityTrust& trust,
               std::function<void()> onConnectionLost)
        : mainQueue_(mainQueue), trust_(trust), connection_(std::move(connection)),
          windows_(*connection_, owners_, userTime_), clientWindows_(windows_, runLoop),
          launchFeedback_(windows_, userTime_),
          workspace_(entries_, clientWindows_, launchFeedback_, runLoop, mainQueue),
          eventTaps_(mainQueue, userTime_, {}, std::move(onConnectionLost)) {}

    const platform::Services& services() const { return services_; }

    /// Reads the installed applications and finds the owners of the open windows, so that the first
    /// key press does not pay for it.
    void prepare() { clientWindows_.clientWindows(); }

private:
    qt::MainQueue& mainQueue_;
    x11::AccessibilityTrust& trust_;
    std::unique_ptr<x11::Connection> connection_;
    x11::UserTime userTime_;
    freedesktop::DesktopEntries entries_;
    freedesktop::WindowOwners owners_{entries_};
    x11::Windows windows_;
    x11::ClientWindows clientWindows_;
    x11::LaunchFeedback launchFeedback_;
    freedesktop::Workspace workspace_;
    x11::EventTaps eventTaps_;
    x11::WindowList windowList_{windows_};
    x11::ProcessActivation processActivation_{windows_, userTime_};
    freedesktop::RunningApplications runningApplications_{entries_, clientWindows_, workspace_};
    freedesktop::FileManager fileManager_;
    freedesktop::TextComparison textComparison_;
    platform::NotificationCenter notificationCenter_;
    platform::Services services_{
        .accessibilityTrust = trust_,
        .eventTaps = eventTaps_,
        .fileManager = fileManager_,
        .mainQueue = mainQueue_,
        .notificationCenter = notificationCenter_,
        .processActivation = processActivation_,
        .runningApplications = runningApplications_,
        .textComparison = textComparison_,
        .windowList = windowList_,
        .workspace = workspace_,
        .standardOutput = std::cout,
    };
};

/// The program from its start to its end: waits for a display, then runs the delegate on it.
class Program {
public:
    /// Looks for the display, now and then every few seconds until it is there.
    void start() {
        auto connection = x11::Connection::open();
        if (!connection) {
            trust_.isProcessTrustedWithPrompt();
            mainQueue_.asyncAfter(displayRetryInterval, [this] { start(); });
            return;
        }
        desktop_.emplace(std::move(connection), mainQueue_, runLoop_, trust_,
                         [] { QCoreApplication::quit(); });
        platform::setServices(&desktop_->services());
        delegate_.emplace(desktop_->services());
        delegate_->applicationDidFinishLaunching();
        mainQueue_.async([this] { desktop_->prepare(); });
    }

    void terminate() {
        if (delegate_) {
            delegate_->applicationWillTerminate();
        }
    }

    qt::RunLoop& runLoop() { return runLoop_; }

private:
    qt::MainQueue mainQueue_;
    qt::RunLoop runLoop_;
    x11::AccessibilityTrust trust_{TrustPrompt{}};
    std::optional<X11Desktop> desktop_;
    std::optional<AppDelegate> delegate_;
};

int run(int argumentCount, char** arguments) {
    // A reader of our diagnostics may go away at any time.
    std::signal(SIGPIPE, SIG_IGN);
    qt::TerminationSignals terminationSignals;
    QCoreApplication application(argumentCount, arguments);
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
