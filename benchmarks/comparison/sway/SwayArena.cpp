#include "comparison/sway/SwayArena.h"

#include "comparison/HeldKeys.h"
#include "comparison/Processes.h"
#include "comparison/Shortcuts.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::bench {

test::Application& SwayArena::open(const std::string& name, int windows,
                                   std::vector<std::string> options) {
    const test::ApplicationPlace place{.home = desktop.home(),
                                       .applications = desktop.applications(),
                                       .environment = desktop.environment(),
                                       .windowProgram = HFP_WAYLAND_WINDOW};
    options.insert(options.end(), {"--windows", std::to_string(windows)});
    auto& application = *applications_.emplace_back(std::make_unique<test::Application>(
        place, name, test::ApplicationTraits{.options = std::move(options)}));
    auto& program = application.start();
    if (!test::waitUntil([&] { return windowsOf(name) >= windows; })) {
        throw std::runtime_error(name + " shows no window: " + program.errors());
    }
    return application;
}

int SwayArena::windowsOf(const std::string& name) const {
    return static_cast<int>(
        std::ranges::count(pager.windows(), name, &test::SwayWindow::applicationId));
}

void SwayArena::bringToFront(const test::Application& application) {
    const auto process = application.copies().at(0);
    pager.focus(process);
    if (!test::waitUntil([&] { return pager.focusedProcess() == process; })) {
        throw std::runtime_error("sway brings no window to the front");
    }
}

void SwayArena::settle(pid_t process) {
    bench::settle({process, desktop.sway().pid()});
}

double SwayArena::timePress(const std::function<std::optional<Clock::time_point>()>& arrival) {
    auto modifiers = combination.keys();
    modifiers.pop_back();
    const HeldKeys held(keyboard, modifiers);
    const auto key = combination.keyName();
    keyboard.sync(); // sway's work on the modifiers is not to be measured
    const auto start = Clock::now();
    keyboard.press(key);
    const auto end = arrival();
    keyboard.release(key);
    if (!end) {
        throw std::runtime_error("a press of the combination had no effect");
    }
    return std::chrono::duration<double>(*end - start).count();
}

} // namespace hollowfernpike::bench
