#include "comparison/Arena.h"

#include "comparison/Contestant.h"
#include "comparison/Processes.h"
#include "support/WaitUntil.h"

#include <cstdlib>
#include <fstream>
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

/// Keys that are held down until this is destroyed.
class Held {
public:
    Held(test::KeyInjector& keyboard, std::vector<std::string> modifiers)
        : keyboard_(keyboard), modifiers_(std::move(modifiers)) {
        for (const auto& modifier : modifiers_) {
            keyboard_.press(modifier);
        }
    }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() {
        for (auto modifier = modifiers_.rbegin(); modifier != modifiers_.rend(); ++modifier) {
            keyboard_.release(*modifier);
        }
    }

private:
    test::KeyInjector& keyboard_;
    std::vector<std::string> modifiers_;
};

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

std::filesystem::path Arena::install(const std::string& name, const std::string& exec) const {
    auto file = desktop.applications() / (name + ".desktop");
    std::ofstream{file} << "[Desktop Entry]\nType=Application\nName=" << name
                        << "\nStartupWMClass=" << name << "\nExec=" << exec << '\n';
    return file;
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

double Arena::timePress(const std::function<std::optional<Clock::time_point>()>& arrival) {
    auto modifiers = combination.keys();
    modifiers.pop_back();
    const Held held(keyboard, modifiers);
    const auto key = keyboard.keycode(combination.keyName());
    front.forget();
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
