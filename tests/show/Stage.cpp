#include "show/Stage.h"

#include "support/WriteFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace hollowfernpike::show {

namespace {

constexpr const char* background = "#35506b";

constexpr const char* terminalLook = R"(XTerm*faceName: DejaVu Sans Mono
XTerm*faceSize: 12
XTerm*geometry: 66x20+70+60
XTerm*background: #1d2733
XTerm*foreground: #e6edf3
XTerm*cursorBlink: false
)";

constexpr const char* toolkitLook = R"([Settings]
gtk-font-name=DejaVu Sans 10
gtk-cursor-blink=0
gtk-enable-animations=0
)";

/// Hides the editor's warning to root, who can do no harm here.
constexpr const char* toolkitStyle = R"(window label { opacity: 0; font-size: 0; }
menubar label { opacity: 1; font-size: 10pt; }
)";

std::string numberedIdentifier(std::size_t number) {
    std::array<char, 37> text{};
    std::snprintf(text.data(), text.size(), "00000000-0000-4000-8000-%012zu",
                  number % 1'000'000'000'000);
    return text.data();
}

} // namespace

Stage::Stage(std::vector<Binding> bindings) : bindings_(std::move(bindings)) {
    desktop.showOfMachine("icons/hicolor");
    for (const auto& binding : bindings_) {
        desktop.showOfMachine("applications" / binding.entry.filename());
        if (!std::filesystem::exists(binding.entry)) {
            throw std::runtime_error(binding.application + " is not installed");
        }
    }
    furnish();
    writeShortcuts();
}

void Stage::furnish() const {
    test::writeFile(desktop.home() / ".Xdefaults", terminalLook);
    test::writeFile(desktop.home() / ".config/gtk-3.0/settings.ini", toolkitLook);
    test::writeFile(desktop.home() / ".config/gtk-3.0/gtk.css", toolkitStyle);
    if (desktop.start({"xsetroot", "-solid", background})->wait() != 0) {
        throw std::runtime_error("the background cannot be painted");
    }
}

void Stage::writeShortcuts() const {
    auto list = nlohmann::json::array();
    for (const auto& binding : bindings_) {
        const auto name = binding.entry.stem().string();
        list.push_back({{"id", numberedIdentifier(list.size())},
                        {"keyCode", binding.combination.keyCode},
                        {"modifierFlags", binding.combination.modifierFlags},
                        {"appPath", binding.entry},
                        {"appName", name},
                        {"appBundleIdentifier", name}});
    }
    test::writeFile(desktop.dataHome() / "Hollowfernpike" / "shortcuts.json", list.dump());
}

void Stage::startUtility() {
    auto environment = desktop.environment();
    environment["SHELL"] = "/bin/sh";
    environment["PS1"] = "$ ";
    environment["ENV"] = std::nullopt;
    environment["LC_ALL"] = "C.UTF-8";
    utility_ =
        std::make_unique<test::ChildProcess>(std::vector<std::string>{HFP_PROGRAM}, environment);
}

bool Stage::combinationsAreHeld() {
    return std::ranges::all_of(
        bindings_, [this](const auto& binding) { return prober_.areTaken({grabOf(binding)}); });
}

bool Stage::combinationsAreFree() {
    return std::ranges::none_of(
        bindings_, [this](const auto& binding) { return prober_.areTaken({grabOf(binding)}); });
}

test::KeyGrab Stage::grabOf(const Binding& binding) {
    return {keyboard.keycode(binding.combination.keyName()), binding.combination.modifierState()};
}

} // namespace hollowfernpike::show
