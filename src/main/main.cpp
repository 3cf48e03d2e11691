#include "app/CommandLine.h"
#include "main/Domains.h"
#include "main/Messages.h"
#include "main/Program.h"
#include "main/Restart.h"
#include "main/Surroundings.h"
#include "model/CombinationText.h"
#include "model/PreferencesMigration.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/instance/Instance.h"
#include "platform/freedesktop/launching/CoreLimit.h"
#include "platform/freedesktop/launching/OwnEnvironment.h"
#include "platform/gnome/Desktop.h"
#include "platform/kde/Desktop.h"
#include "platform/portal/Desktop.h"
#include "platform/qt/TerminationSignals.h"
#include "platform/qt/UserDefaults.h"
#include "platform/sway/Desktop.h"
#include "platform/wayland/UnknownDesktop.h"
#include "platform/wayland/connection/Connection.h"
#include "platform/x11/Desktop.h"
#include "ui/icons/IconReader.h"

#include <QApplication>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

namespace hollowfernpike {
namespace {

const freedesktop::Instance::Names names{
    .lock = "hollowfernpike", .bus = std::string{ownDomain}, .plainAction = defaultAction};

/// A kind of session on Wayland. `find` takes the connection if the session is of that kind.
struct WaylandKind {
    std::unique_ptr<platform::FoundDesktop> (*find)(
        std::unique_ptr<wayland::Connection>& connection);
    bool comesBack = false; ///< the session goes on when its compositor has crashed
};

/// In the order in which they are looked for.
constexpr WaylandKind waylandKinds[] = {
    {sway::findDesktop},   {kde::findDesktop, true},      {gnome::findDesktop, true},
    {portal::findDesktop}, {wayland::findUnknownDesktop},
};

/// What to tell the user if there is none of these.
platform::LocalizedError noDesktop() {
    return {"ディスプレイに接続できないため、ショートカットキーを検出できません。"
            "グラフィカルセッションにログインして起動するか、WAYLAND_DISPLAY または DISPLAY を"
            "設定してください。",
            "Shortcuts cannot be seen: no display can be reached. "
            "Start the program inside a graphical session, or set WAYLAND_DISPLAY or DISPLAY."};
}

platform::LocalizedError nameTaken() {
    return {"他のプログラムがセッションバスで Hollowfernpike の名前を使用しているため、"
            "ランチャーからは呼び出せません。",
            "Another program has our name on the session bus, so launchers cannot call us."};
}

/// A Wayland session often has an X server as well, which does not see the keys.
std::unique_ptr<platform::FoundDesktop> findDesktop() {
    auto connection = wayland::Connection::open();
    for (const auto& kind : waylandKinds) {
        if (auto found = connection ? kind.find(connection) : nullptr) {
            return found;
        }
    }
    return x11::findDesktop();
}

/// The desktop whose compositor has crashed. Waits until it is there again; null once its session
/// has ended.
std::unique_ptr<platform::FoundDesktop> findDesktopAgain() {
    constexpr std::chrono::seconds patience{15};
    constexpr std::chrono::milliseconds pause{100};
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (wayland::Connection::hasSocket() && std::chrono::steady_clock::now() < deadline) {
        auto connection = wayland::Connection::open();
        for (const auto& kind : waylandKinds) {
            if (auto found = connection && kind.comesBack ? kind.find(connection) : nullptr) {
                return found;
            }
        }
        std::this_thread::sleep_for(pause);
    }
    return nullptr;
}

/// SIGPIPE, because a reader of our diagnostics may go away. The others, because a program that its
/// terminal has stopped would leave the keyboard frozen at the next bound key press.
void ignoreSignals() {
    for (const int number : {SIGPIPE, SIGTSTP, SIGTTIN, SIGTTOU}) {
        std::signal(number, SIG_IGN);
    }
}

/// The toolkit may still use a bus connection that has just closed; libdbus would abort the process
/// for that.
void surviveTheEndOfTheBus() {
    freedesktop::setOwnVariable("DBUS_FATAL_WARNINGS", "0");
}

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string{} : value;
}

/// Identifier of our own start, whose notice the desktop shows until we end it; empty if there is
/// none. To be read before the toolkit removes it from the environment.
std::string ownStartupIdentifier() {
    const auto identifier = variable("DESKTOP_STARTUP_ID");
    return identifier.empty() ? variable("XDG_ACTIVATION_TOKEN") : identifier;
}

freedesktop::InstanceRequest requestFor(const CommandLine& line) {
    if (line.press) {
        return {.action = pressAction,
                .startupIdentifier = ownStartupIdentifier(),
                .parameter = CombinationText::words(*line.press)};
    }
    return {.action = line.action.empty() ? defaultAction : line.action,
            .startupIdentifier = ownStartupIdentifier()};
}

/// What a first start has to do; nothing if it is a plain one.
std::optional<freedesktop::InstanceRequest>
ownRequest(const CommandLine& line, const freedesktop::InstanceRequest& request) {
    if (line.press) {
        return request;
    }
    // The toolkit itself uses the start-up identifier for the first window.
    return line.action.empty() ? std::nullopt
                               : std::optional(freedesktop::InstanceRequest{line.action, {}});
}

platform::LocalizedError nothingBound(const platform::KeyCombination& combination) {
    const auto text = CombinationText::symbols(combination);
    return {text + " に割り当てられたアプリケーションはありません",
            "No application is bound to " + text};
}

/// Not by QT_QPA_PLATFORM: programs that we launch would inherit it.
struct ToolkitArguments {
    std::string program;
    std::string platform;
    std::string option = "-platform";
    std::array<char*, 4> words{program.data(), option.data(), platform.data(), nullptr};
    int count = 3;
};

int runInstance(freedesktop::Instance& instance, platform::FoundDesktop& desktop,
                const CommandLine& line, const std::string& command,
                const std::string& openWindows) {
    qt::UserDefaults userDefaults(ownDomain);
    PreferencesMigration::run(userDefaults, previousDomains);
    using Publication = freedesktop::Instance::Publication;
    const auto request = requestFor(line);
    qt::TerminationSignals terminationSignals;
    const auto busAddress = freedesktop::SessionBus::addressOfSession();
    const bool busAnswers = freedesktop::SessionBus::answers(busAddress);
    if (!busAnswers) {
        hideSessionBus();
    }
    QCoreApplication::setApplicationName("Hollowfernpike");
    QGuiApplication::setDesktopFileName(QString::fromUtf8(ownDomain));
    ToolkitArguments arguments{.program = command, .platform = desktop.toolkitPlatform()};
    QApplication application(arguments.count, arguments.words.data());
    const auto bus = busAddress.empty()
                         ? nullptr
                         : std::make_unique<freedesktop::SessionBus>(busAddress, busAnswers);
    const auto publication = bus ? instance.publish(*bus, request) : Publication::done;
    if (publication == Publication::handedOver) {
        return EXIT_SUCCESS;
    }
    if (publication == Publication::impossible) {
        tell(nameTaken());
    }
    Program program(desktop, userDefaults, terminationSignals, bus.get(), openWindows);
    if (line.press && !Program::isBound(*line.press)) {
        tell(nothingBound(*line.press));
        return EXIT_FAILURE;
    }
    instance.listen(
        program.runLoop(),
        [&program](const freedesktop::InstanceRequest& asked) { program.perform(asked); },
        &Program::canPerform);
    const int status = program.run(ownRequest(line, request));
    constexpr std::chrono::milliseconds patienceWithIcons{200};
    if (!stopReadingIcons(patienceWithIcons)) { // from a disk that does not answer
        std::_Exit(status);
    }
    return status;
}

/// Null if another process has taken what this start is for, or nobody is left to quit.
std::unique_ptr<freedesktop::Instance> becomeInstance(const CommandLine& line) {
    auto instance = freedesktop::Instance::become(names, requestFor(line));
    return line.action == "quitApp" ? nullptr : std::move(instance);
}

int run(const CommandLine& line, const std::string& command) {
    ignoreSignals();
    freedesktop::settleBaseDirectories();
    surviveTheEndOfTheBus();
    stayOnThisMachine();
    freedesktop::turnOffCoreFiles();
    const auto openWindows = stateBeforeRestart();
    try {
        // A press is handed over before anything is looked for, because somebody waits for it.
        auto instance = line.press ? becomeInstance(line) : nullptr;
        if (line.press && !instance) {
            return EXIT_SUCCESS;
        }
        const auto desktop = openWindows ? findDesktopAgain() : findDesktop();
        if (!desktop && openWindows) {
            return EXIT_SUCCESS;
        }
        if (!desktop) {
            tell(noDesktop());
            return EXIT_FAILURE;
        }
        if (!instance) {
            instance = becomeInstance(line);
        }
        return instance ? runInstance(*instance, *desktop, line, command, openWindows.value_or(""))
                        : EXIT_SUCCESS;
    } catch (const freedesktop::RequestRefused&) {
        tell(nothingBound(*line.press));
    } catch (const platform::LocalizedError& error) {
        tell(error);
    }
    return EXIT_FAILURE;
}

} // namespace
} // namespace hollowfernpike

int main(int argc, char** argv) {
    using hollowfernpike::CommandLine;
    hollowfernpike::openStandardDescriptors();
    hollowfernpike::neverWaitForReaders();
    const auto line = hollowfernpike::parseCommandLine(
        std::span<const char* const>(argv, static_cast<std::size_t>(argc)).subspan(1));
    switch (line.purpose) {
    case CommandLine::Purpose::run:
        return hollowfernpike::run(line, argv[0]);
    case CommandLine::Purpose::help:
        std::cout << hollowfernpike::usage() << std::flush;
        return EXIT_SUCCESS;
    case CommandLine::Purpose::version:
        std::cout << "hollowfernpike " HOLLOWFERNPIKE_VERSION << std::endl;
        return EXIT_SUCCESS;
    case CommandLine::Purpose::misuse:
        if (line.fault) {
            hollowfernpike::tell(*line.fault);
        }
        std::cerr << hollowfernpike::usage();
        return 2;
    }
}
