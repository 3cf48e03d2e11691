#include "platform/freedesktop/owners/ProgramIdentity.h"

#include "platform/freedesktop/entries/Names.h"

#include <algorithm>
#include <array>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::array<std::string_view, 20> interpreters{
    "bash", "dash", "electron", "fish", "gjs", "gjs-console", "guile", "java", "ksh",  "lua",
    "mono", "node", "nodejs",   "perl", "php", "python",      "ruby",  "sh",   "wish", "zsh"};

constexpr std::array<std::string_view, 14> starters{
    "bwrap",   "dbus-launch", "dbus-run-session", "exo-open",         "firejail",
    "flatpak", "gio",         "gtk-launch",       "pkexec",           "snap",
    "sudo",    "wine",        "xdg-open",         "xdg-terminal-exec"};

std::string_view withoutVersion(std::string_view name) {
    const auto last = name.find_last_not_of("0123456789.-");
    return name.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

bool isAssignment(const std::string& word) {
    return word.find('=') != std::string::npos && !word.starts_with('-');
}

using Word = std::vector<std::string>::const_iterator;

Word behindEnv(Word word, Word end) {
    return std::find_if(word, end, [](const auto& argument) {
        return !isAssignment(argument) && !argument.starts_with('-');
    });
}

std::string scriptAmong(Word word, Word end) {
    for (; word != end; ++word) {
        if (*word == "-c" || *word == "-m" || *word == "-e") {
            return {};
        }
        if (!word->starts_with('-')) {
            return *word;
        }
    }
    return {};
}

} // namespace

bool isInterpreter(std::string_view programName) {
    return std::ranges::find(interpreters, withoutVersion(programName)) != interpreters.end();
}

std::string identifyingProgram(const std::vector<std::string>& words) {
    auto program = words.begin();
    if (program != words.end() && fileName(*program) == "env") {
        program = behindEnv(program + 1, words.end());
    }
    if (program == words.end()) {
        return {};
    }
    const auto name = fileName(*program);
    if (std::ranges::find(starters, name) != starters.end()) {
        return {};
    }
    return isInterpreter(name) ? scriptAmong(program + 1, words.end()) : *program;
}

} // namespace hollowfernpike::freedesktop
