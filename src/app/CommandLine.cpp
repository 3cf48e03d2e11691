#include "app/CommandLine.h"

#include "model/CombinationText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace hollowfernpike {

namespace {

using Purpose = CommandLine::Purpose;

// The delegate's actions that make sense outside its menu.
constexpr std::array<std::string_view, 4> actions{"openMainWindow", "exportShortcuts",
                                                  "importShortcuts", "quitApp"};

/// Without what session managers add to the command of a program that they start again.
std::vector<const char*> withoutSession(std::span<const char* const> arguments) {
    std::vector<const char*> rest(arguments.begin(), arguments.end());
    for (auto word = rest.begin(); word != rest.end();) {
        const std::string_view text = *word;
        const bool hasValue = text == "-session" && word + 1 != rest.end();
        const bool isSession = hasValue || text.starts_with("-session=");
        word = isSession ? rest.erase(word, word + (hasValue ? 2 : 1)) : word + 1;
    }
    return rest;
}

CommandLine pressOf(std::string_view combination) {
    try {
        return {
            .purpose = Purpose::run, .action = {}, .press = CombinationText::parse(combination)};
    } catch (const platform::LocalizedError& error) {
        return {.purpose = Purpose::misuse, .action = {}, .fault = error};
    }
}

CommandLine parse(std::span<const char* const> arguments) {
    if (arguments.empty()) {
        return {};
    }
    const std::string_view first = arguments[0];
    if (arguments.size() == 1 && first == "--help") {
        return {.purpose = Purpose::help, .action = {}};
    }
    if (arguments.size() == 1 && first == "--version") {
        return {.purpose = Purpose::version, .action = {}};
    }
    if (arguments.size() == 2 && first == "--action" &&
        std::ranges::find(actions, arguments[1]) != actions.end()) {
        return {.purpose = Purpose::run, .action = arguments[1]};
    }
    if (arguments.size() == 2 && first == "--press") {
        return pressOf(arguments[1]);
    }
    return {.purpose = Purpose::misuse, .action = {}};
}

} // namespace

CommandLine parseCommandLine(std::span<const char* const> arguments) {
    return parse(withoutSession(arguments));
}

std::string usage() {
    std::string text =
        "hollowfernpike [--action ACTION | --press COMBINATION | --help | --version]\n"
        "ACTION:";
    for (const auto action : actions) {
        text.append(" ").append(action);
    }
    return text + "\nCOMBINATION: such as Ctrl+Alt+K, ⌃⌥K, Super+F9 or Super+Key(50)\n";
}

} // namespace hollowfernpike
