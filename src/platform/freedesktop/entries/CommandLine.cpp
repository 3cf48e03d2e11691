#include "platform/freedesktop/entries/CommandLine.h"

#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/GlibPointers.h"

namespace hollowfernpike::freedesktop {

namespace {

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

} // namespace hollowfernpike::freedesktop
