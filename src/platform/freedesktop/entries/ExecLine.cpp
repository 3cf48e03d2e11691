#include "platform/freedesktop/entries/ExecLine.h"

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/GlibPointers.h"
#include "platform/freedesktop/entries/Names.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <string_view>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                   "0123456789/._+-@:,%";
constexpr std::string_view escapedInQuotes = "\"`$\\";

std::string replacementOf(char code, const DesktopEntry& entry) {
    switch (code) {
    case 'c':
        return entry.displayName;
    case 'k':
        return entry.path;
    case '%':
        return "%";
    default:
        return {};
    }
}

std::string expanded(const std::string& word, const DesktopEntry& entry) {
    std::string result;
    for (std::size_t at = 0; at < word.size(); ++at) {
        if (word[at] != '%') {
            result += word[at];
        } else if (++at < word.size()) {
            result += replacementOf(word[at], entry);
        }
    }
    return result;
}

void appendIcon(std::vector<std::string>& arguments, const DesktopEntry& entry) {
    if (!entry.icon.empty()) {
        arguments.emplace_back("--icon");
        arguments.push_back(entry.icon);
    }
}

std::string withoutFieldCodes(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        result.append(letter == '%' ? 2 : 1, letter);
    }
    return result;
}

std::string quoted(const std::string& text) {
    if (text.find_first_not_of(plain) == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char letter : text) {
        if (escapedInQuotes.find(letter) != std::string_view::npos) {
            result += '\\';
        }
        result += letter;
    }
    return result + '"';
}

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

std::vector<std::string> wordsOf(const std::string& exec) {
    gchar** words = nullptr;
    if (g_shell_parse_argv(exec.c_str(), nullptr, &words, nullptr) == FALSE) {
        return {};
    }
    const TextListPointer held(words);
    return {words, words + g_strv_length(words)};
}

std::vector<std::string> commandLineOf(const DesktopEntry& entry) {
    std::vector<std::string> arguments;
    for (const auto& word : entry.words) {
        if (word == "%i") {
            appendIcon(arguments, entry);
            continue;
        }
        auto argument = expanded(word, entry);
        if (word.empty() || !argument.empty()) {
            arguments.push_back(std::move(argument));
        }
    }
    return arguments;
}

std::optional<std::string> execLineFor(const std::filesystem::path& program) {
    const auto& path = program.native();
    const bool isUtf8 =
        g_utf8_validate(path.data(), static_cast<gssize>(path.size()), nullptr) != FALSE;
    const bool hasPercent = path.find('%') != std::string::npos;
    // Launchers turn "%%" into "%" in arguments, but not in the program's name: so "env" starts the
    // program as its argument. But "env" takes an argument with "=" for a variable.
    const bool needsEnv = hasPercent;
    if (!isUtf8 || (needsEnv && path.find('=') != std::string::npos)) {
        return std::nullopt;
    }
    return (needsEnv ? "env " : "") + quoted(withoutFieldCodes(path));
}

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

std::string findProgram(const std::string& program, const std::string& directory) {
    const bool isRelativePath = program.find('/') != std::string::npos && program.front() != '/';
    const auto wanted = isRelativePath && !directory.empty() ? directory + '/' + program : program;
    return orEmpty(TextPointer(g_find_program_in_path(wanted.c_str())).get());
}

std::string resolvedFile(const std::string& path) {
    char resolved[PATH_MAX];
    return ::realpath(path.c_str(), resolved) == nullptr ? std::string{} : std::string{resolved};
}

} // namespace hollowfernpike::freedesktop
