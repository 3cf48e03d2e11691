#include "app/CommandLine.h"

#include "model/CombinationText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace hollowfernpike {

namespace {

using Purpose = CommandLine::Purpose;

// The delegate's actions that make sense outside its menu.
constexpr std::array<std::string_view, 4> actions{"openMainWindow", "exportShortcuts",
                                                  "importShortcuts", "quitApp"};

CommandLine pressOf(std::string_view combination) {
    try {
        return {
            .purpose = Purpose::run, .action = {}, .press = CombinationText::parse(combination)};
    } catch (const platform::LocalizedError& error) {
        return {.purpose = Purpose::misuse, .action = {}, .fault = error};
    }
}

} // namespace

CommandLine parseCommandLine(std::span<const char* const> arguments) {
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
