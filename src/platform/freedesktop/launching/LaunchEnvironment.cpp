#include "platform/freedesktop/launching/LaunchEnvironment.h"

#include "platform/freedesktop/launching/OwnEnvironment.h"

#include <algorithm>
#include <array>
#include <string_view>

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

} // namespace

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

} // namespace hollowfernpike::freedesktop
