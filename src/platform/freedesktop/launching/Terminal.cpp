#include "platform/freedesktop/launching/Terminal.h"

#include "platform/freedesktop/launching/ProgramFile.h"

#include <array>

namespace hollowfernpike::freedesktop {

namespace {

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

} // namespace

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

} // namespace hollowfernpike::freedesktop
