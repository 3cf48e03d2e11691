#include "platform/freedesktop/LaunchEnvironment.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::array<std::string_view, 16> ours{
    "DESKTOP_STARTUP_ID",   "XDG_ACTIVATION_TOKEN", launchedFileVariable, launchedNumberVariable,
    "DESKTOP_AUTOSTART_ID", "INVOCATION_ID",        "JOURNAL_STREAM",     "SYSTEMD_EXEC_PID",
    "MANAGERPID",           "NOTIFY_SOCKET",        "WATCHDOG_PID",       "WATCHDOG_USEC",
    "LISTEN_PID",           "LISTEN_FDS",           "LISTEN_FDNAMES",     libdbusVariable};

bool isOurs(std::string_view variable) {
    return std::ranges::find(ours, variable.substr(0, variable.find('='))) != ours.end();
}

} // namespace

std::vector<std::string> launchEnvironment(const std::string& entryPath,
                                           const std::string& startupIdentifier) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (!isOurs(*variable)) {
            variables.emplace_back(*variable);
        }
    }
    variables.push_back(std::string{launchedFileVariable} + '=' + entryPath);
    if (!startupIdentifier.empty()) {
        variables.push_back("DESKTOP_STARTUP_ID=" + startupIdentifier);
        variables.push_back("XDG_ACTIVATION_TOKEN=" + startupIdentifier);
    }
    return variables;
}

} // namespace hollowfernpike::freedesktop
