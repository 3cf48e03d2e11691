#include "platform/freedesktop/launching/ProgramLaunch.h"

#include "platform/freedesktop/entries/CommandLine.h"
#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/freedesktop/launching/LaunchEnvironment.h"
#include "platform/freedesktop/launching/LaunchError.h"
#include "platform/freedesktop/launching/ProgramFile.h"
#include "platform/freedesktop/launching/Terminal.h"

#include <system_error>
#include <utility>

namespace hollowfernpike::freedesktop {

namespace {

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
    start.ownNumberVariable = launchedNumberVariable;
    start.workingDirectory = workingDirectoryOf(entry);
    try {
        return spawn(std::move(start));
    } catch (const std::system_error& error) {
        throw failedStart(entry.path, error.code().message());
    }
}

} // namespace hollowfernpike::freedesktop
