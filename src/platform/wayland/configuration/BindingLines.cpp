#include "platform/wayland/configuration/BindingLines.h"

#include "platform/freedesktop/keyboard/KeyNames.h"
#include "platform/wayland/configuration/KernelKeyNames.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace hollowfernpike::wayland {

namespace {

using namespace platform::event_flags;

/// One key of a combination and the command that it runs.
struct Binding {
    std::uint64_t modifierFlags = 0;
    std::uint16_t evdev = 0;
    std::string symbol; ///< as the keyboard's map calls it
    std::vector<std::string> words;
};

using LineOf = std::string (*)(const Binding& binding);

/// A compositor whose configuration we can write.
struct Compositor {
    std::string_view name; ///< of its process, and in the variable XDG_CURRENT_DESKTOP
    std::string_view japanesePlace;
    std::string_view englishPlace;
    LineOf lineOf;
};

bool isPlain(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 ||
           std::string_view("_./+:=-").find(letter) != std::string_view::npos;
}

/// As a shell reads it.
std::string quoted(const std::string& word) {
    if (!word.empty() && std::ranges::all_of(word, isPlain)) {
        return word;
    }
    std::string text = "'";
    for (const char letter : word) {
        text += letter == '\'' ? R"('\'')" : std::string{letter};
    }
    return text + '\'';
}

std::string commandLine(const std::vector<std::string>& words) {
    std::string text;
    for (const auto& word : words) {
        text += (text.empty() ? "" : " ") + quoted(word);
    }
    return text;
}

/// What stands for the modifiers that are held, each followed by `separator`.
std::string modifierText(const Binding& binding, const std::array<std::string_view, 4>& names,
                         std::string_view separator) {
    constexpr std::array flags{control, option, shift, command};
    std::string text;
    for (std::size_t at = 0; at < flags.size(); ++at) {
        if ((binding.modifierFlags & flags[at]) != 0) {
            text.append(names[at]).append(separator);
        }
    }
    return text;
}

std::string escapedForXml(const std::string& text) {
    return QString::fromStdString(text).toHtmlEscaped().toStdString();
}

std::string lineOfLabwc(const Binding& binding) {
    return "<keybind key=\"" + modifierText(binding, {"C", "A", "S", "W"}, "-") +
           escapedForXml(binding.symbol) + R"("><action name="Execute" command=")" +
           escapedForXml(commandLine(binding.words)) + "\"/></keybind>";
}

// Its bindings have names, which must not be those of the user's.
std::string lineOfWayfire(const Binding& binding) {
    const auto name = "hollowfernpike_" + modifierText(binding, {"c", "a", "s", "w"}, "") + '_' +
                      std::to_string(binding.evdev);
    return "binding_" + name + " = " +
           modifierText(binding, {"<ctrl>", "<alt>", "<shift>", "<super>"}, " ") +
           kernelKeyName(binding.evdev) + "\ncommand_" + name + " = " + commandLine(binding.words);
}

std::string lineOfRiver(const Binding& binding) {
    auto modifiers = modifierText(binding, {"Control", "Alt", "Shift", "Super"}, "+");
    modifiers.resize(modifiers.size() - (modifiers.empty() ? 0 : 1));
    return "riverctl map normal " + (modifiers.empty() ? "None" : modifiers) + ' ' +
           quoted(binding.symbol) + " spawn " + quoted(commandLine(binding.words));
}

std::string lineOfHyprland(const Binding& binding) {
    return "bind = " + modifierText(binding, {"CTRL", "ALT", "SHIFT", "SUPER"}, " ") +
           ", code:" + std::to_string(binding.evdev + freedesktop::xkbKeyCodeOffset) + ", exec, " +
           commandLine(binding.words);
}

std::string lineOfNiri(const Binding& binding) {
    std::string line =
        modifierText(binding, {"Ctrl", "Alt", "Shift", "Super"}, "+") + binding.symbol + " { spawn";
    for (const auto& word : binding.words) {
        line += " \"";
        for (const char letter : word) {
            line +=
                letter == '"' || letter == '\\' ? std::string{'\\', letter} : std::string{letter};
        }
        line += '"';
    }
    return line + "; }";
}

std::string lineOfSway(const Binding& binding) {
    return "bindcode --no-repeat " + modifierText(binding, {"Ctrl", "Mod1", "Shift", "Mod4"}, "+") +
           std::to_string(binding.evdev + freedesktop::xkbKeyCodeOffset) + " exec " +
           commandLine(binding.words);
}

constexpr std::array<Compositor, 6> compositors{{
    {"labwc",
     "~/.config/labwc/rc.xml の <keyboard> と </keyboard> の間に次の行を書き、"
     "labwc --reconfigure を実行してください。",
     "Write these lines into ~/.config/labwc/rc.xml, between <keyboard> and </keyboard>, and then "
     "run: labwc --reconfigure",
     &lineOfLabwc},
    {"wayfire", "~/.config/wayfire.ini の [command] の下に次の行を書いてください。",
     "Write these lines into ~/.config/wayfire.ini, below [command].", &lineOfWayfire},
    {"river", "~/.config/river/init に次の行を書き、端末でも一度実行してください。",
     "Write these lines into ~/.config/river/init, and run them once in a terminal, too.",
     &lineOfRiver},
    {"Hyprland", "~/.config/hypr/hyprland.conf に次の行を書いてください。",
     "Write these lines into ~/.config/hypr/hyprland.conf.", &lineOfHyprland},
    {"niri", "~/.config/niri/config.kdl の binds { } の中に次の行を書いてください。",
     "Write these lines into ~/.config/niri/config.kdl, inside of binds { }.", &lineOfNiri},
    {"sway", "~/.config/sway/config に次の行を書き、swaymsg reload を実行してください。",
     "Write these lines into ~/.config/sway/config, and then run: swaymsg reload", &lineOfSway},
}};

bool isSameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, [](unsigned char one, unsigned char other) {
        return std::tolower(one) == std::tolower(other);
    });
}

const Compositor* compositorNamed(std::string_view name) {
    const auto* const found = std::ranges::find_if(
        compositors, [name](const Compositor& known) { return isSameName(known.name, name); });
    return found == compositors.end() ? nullptr : found;
}

const Compositor* compositorOf(std::string_view process, std::string_view session) {
    const auto* found = compositorNamed(process);
    while (found == nullptr && !session.empty()) {
        const auto end = std::min(session.find(':'), session.size());
        found = compositorNamed(session.substr(0, end));
        session.remove_prefix(std::min(end + 1, session.size()));
    }
    return found;
}

std::vector<std::string> linesFor(const platform::BoundCommand& bound, LineOf lineOf,
                                  const Keymap& keymap) {
    std::vector<std::string> lines;
    for (const auto evdev : freedesktop::evdevCodesOf(bound.combination.keyCode)) {
        for (const auto& symbol : keymap.symbolsOf(evdev + freedesktop::xkbKeyCodeOffset)) {
            auto line = lineOf({.modifierFlags = bound.combination.modifierFlags,
                                .evdev = evdev,
                                .symbol = symbol,
                                .words = bound.words});
            if (std::ranges::find(lines, line) == lines.end()) {
                lines.push_back(std::move(line));
            }
        }
    }
    return lines;
}

platform::LocalizedError reasonFor(const Compositor& compositor) {
    const std::string name{compositor.name};
    return {name + " はキー入力を最前面のウインドウだけに見せるため、ショートカットは " + name +
                " 自身の設定に必要です。" + std::string{compositor.japanesePlace},
            name +
                " shows keys to the window in front alone, so its own settings have to bind "
                "your shortcuts. " +
                std::string{compositor.englishPlace}};
}

platform::LocalizedError reasonForUnknown(std::string_view session) {
    const auto name = session.empty() ? std::string{} : " (" + std::string{session} + ')';
    return {"この Wayland セッション" + name +
                "はキー入力を最前面のウインドウだけに見せるため、ショートカットはセッション自身の"
                "設定に必要です。それぞれのキーに次のコマンドを割り当ててください。",
            "This Wayland session" + name +
                " shows keys to the window in front alone, so its own settings have to bind your "
                "shortcuts. Bind each of these commands to its keys."};
}

} // namespace

platform::ManualBindings bindingLines(std::string_view compositor, std::string_view session,
                                      const Keymap* keymap,
                                      std::span<const platform::BoundCommand> commands) {
    const auto* const known = keymap == nullptr ? nullptr : compositorOf(compositor, session);
    platform::ManualBindings bindings{
        .reason = known == nullptr ? reasonForUnknown(session) : reasonFor(*known), .lines = {}};
    for (const auto& command : commands) {
        auto lines = known == nullptr ? std::vector{commandLine(command.words)}
                                      : linesFor(command, known->lineOf, *keymap);
        std::ranges::move(lines, std::back_inserter(bindings.lines));
    }
    return bindings;
}

} // namespace hollowfernpike::wayland
