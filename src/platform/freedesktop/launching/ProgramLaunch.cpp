#include "platform/freedesktop/launching/ProgramLaunch.h"

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/ExecLine.h"
#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/launching/LaunchError.h"
#include "platform/freedesktop/launching/OwnEnvironment.h"
#include "platform/freedesktop/owners/ProcessFacts.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::array<std::string_view, 15> ours{
    "DESKTOP_STARTUP_ID",   "XDG_ACTIVATION_TOKEN", launchedFileVariable, launchedNumberVariable,
    "DESKTOP_AUTOSTART_ID", "INVOCATION_ID",        "JOURNAL_STREAM",     "SYSTEMD_EXEC_PID",
    "MANAGERPID",           "NOTIFY_SOCKET",        "WATCHDOG_PID",       "WATCHDOG_USEC",
    "LISTEN_PID",           "LISTEN_FDS",           "LISTEN_FDNAMES"};

bool isOurs(std::string_view variable) {
    return std::ranges::find(ours, variable.substr(0, variable.find('='))) != ours.end();
}

/// The user's environment, without the variables about our own start and our own service unit, and
/// with those about the program's start.
std::vector<std::string> launchEnvironment(const std::string& entryPath,
                                           const std::string& startupIdentifier) {
    auto variables = usersEnvironment();
    std::erase_if(variables, isOurs);
    variables.push_back(std::string{launchedFileVariable} + '=' + entryPath);
    if (!startupIdentifier.empty()) {
        variables.push_back("DESKTOP_STARTUP_ID=" + startupIdentifier);
        variables.push_back("XDG_ACTIVATION_TOKEN=" + startupIdentifier);
    }
    return variables;
}

struct Terminal {
    const char* program;
    const char* beforeCommand;
};

constexpr std::array<Terminal, 12> terminals{{{"xdg-terminal-exec", nullptr},
                                              {"x-terminal-emulator", "-e"},
                                              {"gnome-terminal", "--"},
                                              {"kgx", "-e"},
                                              {"konsole", "-e"},
                                              {"xfce4-terminal", "-x"},
                                              {"mate-terminal", "-x"},
                                              {"tilix", "-e"},
                                              {"kitty", "--"},
                                              {"alacritty", "-e"},
                                              {"urxvt", "-e"},
                                              {"xterm", "-e"}}};

/// The first words of a command that runs another one in a terminal window: the user's choice where
/// the desktop knows it, else the first terminal that is installed. Empty if there is none.
std::vector<std::string> terminalPrefix() {
    for (const auto& terminal : terminals) {
        if (findProgram(terminal.program).empty()) {
            continue;
        }
        std::vector<std::string> words{terminal.program};
        if (terminal.beforeCommand != nullptr) {
            words.emplace_back(terminal.beforeCommand);
        }
        return words;
    }
    return {};
}

std::vector<std::string> argumentsOf(const DesktopEntry& entry) {
    auto arguments = commandLineOf(entry);
    if (arguments.empty()) {
        throw notAnApplication(entry.path);
    }
    if (!entry.terminal) {
        return arguments;
    }
    auto inTerminal = terminalPrefix();
    if (inTerminal.empty()) {
        throw missingProgram(entry.path, "x-terminal-emulator");
    }
    inTerminal.insert(inTerminal.end(), arguments.begin(), arguments.end());
    return inTerminal;
}

std::string workingDirectoryOf(const DesktopEntry& entry) {
    if (!entry.workingDirectory.empty()) {
        return entry.workingDirectory;
    }
    const auto home = homeDirectory().value_or("/");
    return ::access(home.c_str(), X_OK) == 0 ? home.string() : "/";
}

} // namespace

StartedProcess launchProgram(const DesktopEntry& entry, const std::string& startupIdentifier) {
    ProgramStart start;
    start.arguments = argumentsOf(entry);
    start.program = findProgram(start.arguments.front(), entry.workingDirectory);
    if (start.program.empty()) {
        throw missingProgram(entry.path, start.arguments.front());
    }
    start.environment = launchEnvironment(entry.path, startupIdentifier);
    start.workingDirectory = workingDirectoryOf(entry);
    try {
        return spawn(std::move(start));
    } catch (const std::system_error& error) {
        throw failedStart(entry.path, error.code().message());
    }
}

} // namespace hollowfernpike::freedesktop
