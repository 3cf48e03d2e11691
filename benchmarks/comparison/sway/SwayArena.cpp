#include "comparison/sway/SwayArena.h"

#include "comparison/Processes.h"
#include "comparison/Shortcuts.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::bench {

test::Application& SwayArena::open(const std::string& name, int windows,
                                   std::vector<std::string> options) {
    options.insert(options.end(), {"--windows", std::to_string(windows)});
    auto& application = *applications_.emplace_back(std::make_unique<test::Application>(
        test::placeIn(desktop, HFP_WAYLAND_WINDOW), name,
        test::ApplicationTraits{.options = std::move(options)}));
    auto& program = application.start();
    if (!test::waitUntil([&] { return windowsOf(name) >= windows; })) {
        throw std::runtime_error(name + " shows no window: " + program.errors());
    }
    return application;
}

int SwayArena::windowsOf(const std::string& name) const {
    return static_cast<int>(
        std::ranges::count(pager.windows(), name, &test::PagerWindow::applicationId));
}

void SwayArena::bringToFront(const test::Application& application) {
    const auto process = application.copies().at(0);
    pager.focus(process);
    if (!test::waitUntil([&] { return pager.focusedProcess() == process; })) {
        throw std::runtime_error("sway brings no window to the front");
    }
}

void SwayArena::settle(pid_t process) {
    bench::settle({process, desktop.compositor().pid()});
}

// Sway's work on the modifiers is done before the press.
double SwayArena::timePress(const Arrival& arrival) {
    const auto sync = [this] { keyboard.sync(); };
    return bench::timePress(keyboard, combination.keyName(), sync, arrival);
}

} // namespace hollowfernpike::bench
