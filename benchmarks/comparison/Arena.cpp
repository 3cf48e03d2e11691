#include "comparison/Arena.h"

#include "comparison/Processes.h"
#include "support/WaitUntil.h"

#include <cstdlib>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace hollowfernpike::bench {

namespace {

/// The windows that the program reports as mapped.
std::vector<xcb_window_t> mappedWindows(const std::string& account) {
    std::vector<xcb_window_t> windows;
    std::istringstream words(account);
    for (std::string kind, value; words >> kind >> value;) {
        if (kind == "mapped") {
            windows.push_back(static_cast<xcb_window_t>(std::stoul(value)));
        }
        words.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return windows;
}

} // namespace

Arena::Arena(const std::string& windowManager) : desktop(windowManager) {
    // The peers' manuals recommend a light shell for a quick start of their commands.
    ::setenv("SHELL", "/bin/sh", 1);
    ::unsetenv("SXHKD_SHELL");
    // The key is held until the effect comes; repetition would trigger a slow contestant again.
    if (desktop.start({"xset", "r", "off"})->wait() != 0) {
        throw std::runtime_error("keys cannot be kept from repeating");
    }
    // Not to be measured: the first press from another keyboard than before changes the keyboard
    // map, and the server tells every client.
    keyboard.strike({combination.keyName()});
}

InstalledApplication Arena::install(const std::string& name, const std::string& exec) const {
    return bench::install(desktop.applications(), name, exec);
}

std::filesystem::path Arena::programFile(const std::string& name) const {
    return desktop.home() / "programs" / name;
}

xcb_window_t Arena::open(const std::string& name, int windows) {
    const auto file = programFile(name);
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::copy_file(HFP_PROBE_WINDOW, file);
    auto& program =
        *programs_.emplace_back(desktop.start({file, "--title", name, "--class", name + ',' + name,
                                               "--windows", std::to_string(windows)}));
    std::vector<xcb_window_t> seen;
    const auto allSeen = [&] {
        seen = mappedWindows(program.output());
        return std::ssize(seen) >= windows;
    };
    if (!test::waitUntil(allSeen)) {
        throw std::runtime_error(name + " shows no window: " + program.errors());
    }
    return seen.front();
}

void Arena::bringToFront(xcb_window_t window) {
    pager.activate(window);
    const auto isThere = [&] {
        return pager.activeWindow() == window && pager.focusedWindow() == window;
    };
    if (!test::waitUntil(isThere)) {
        throw std::runtime_error("the window manager brings no window to the front");
    }
}

void Arena::settle(pid_t process) {
    bench::settle(desktop, process);
}

double Arena::timePress(const Arrival& arrival) {
    return bench::timePress(
        keyboard, keyboard.keycode(combination.keyName()), [this] { front.forget(); }, arrival);
}

} // namespace hollowfernpike::bench
