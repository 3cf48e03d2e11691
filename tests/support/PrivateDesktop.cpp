#include "support/PrivateDesktop.h"

#include "support/WaitUntil.h"

#include <stdexcept>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace hollowfernpike::test {

namespace {

bool hasWindowManager(const std::string& display) {
    xcb_connection_t* connection = xcb_connect(display.c_str(), nullptr);
    xcb_ewmh_connection_t ewmh{};
    bool found = false;
    if (xcb_ewmh_init_atoms_replies(&ewmh, xcb_ewmh_init_atoms(connection, &ewmh), nullptr) != 0) {
        xcb_window_t window = XCB_NONE;
        found = xcb_ewmh_get_supporting_wm_check_reply(
                    &ewmh, xcb_ewmh_get_supporting_wm_check(&ewmh, ewmh.screens[0]->root), &window,
                    nullptr) != 0;
        xcb_ewmh_connection_wipe(&ewmh);
    }
    xcb_disconnect(connection);
    return found;
}

Environment sessionEnvironment(const std::filesystem::path& home, const std::string& display) {
    return {
        {"HOME", home.string()},
        {"DISPLAY", display},
        {"WAYLAND_DISPLAY", std::nullopt},
        {"XAUTHORITY", (home / ".Xauthority").string()},
        {"XDG_DATA_HOME", (home / ".local/share").string()},
        {"XDG_CONFIG_HOME", (home / ".config").string()},
        {"XDG_CACHE_HOME", (home / ".cache").string()},
        {"XDG_RUNTIME_DIR", (home / "run").string()},
        {"XDG_SESSION_TYPE", "x11"},
        {"XDG_CURRENT_DESKTOP", std::nullopt},
        {"DESKTOP_STARTUP_ID", std::nullopt},
        {"GIO_USE_VFS", "local"},
        {"GSETTINGS_BACKEND", "memory"},
        {"NO_AT_BRIDGE", "1"},
    };
}

} // namespace

VirtualDisplay::VirtualDisplay(const std::string& name) {
    std::vector<std::string> arguments{"Xvfb",        "-displayfd", "1",   "-screen", "0",
                                       "1280x800x24", "-nolisten",  "tcp", "-noreset"};
    if (!name.empty()) {
        arguments.insert(arguments.begin() + 1, name);
    }
    server_ = std::make_unique<ChildProcess>(arguments);
    const auto line = server_->waitForLine("", 20s);
    if (!line) {
        throw std::runtime_error("Xvfb did not start: " + server_->errors());
    }
    name_ = ':' + *line;
}

SessionBus::SessionBus(const Environment& environment)
    : daemon_(std::make_unique<ChildProcess>(
          std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--print-address=1"},
          environment)) {
    const auto line = daemon_->waitForLine("", 20s);
    if (!line) {
        throw std::runtime_error("dbus-daemon did not start: " + daemon_->errors());
    }
    address_ = *line;
}

PrivateDesktop::PrivateDesktop(const std::string& windowManager)
    : environment_(sessionEnvironment(home_.path(), display_.name())), bus_([this] {
          std::filesystem::create_directories(home_.path() / "run");
          std::filesystem::create_directories(applications());
          std::filesystem::permissions(home_.path() / "run", std::filesystem::perms::owner_all);
          return environment_;
      }()) {
    environment_["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
    if (windowManager.empty()) {
        return;
    }
    windowManager_ = start({windowManager});
    if (!waitUntil([this] { return hasWindowManager(display()); }, 20s)) {
        throw std::runtime_error(windowManager + " did not start: " + windowManager_->errors());
    }
}

std::unique_ptr<ChildProcess>
PrivateDesktop::start(const std::vector<std::string>& arguments) const {
    return std::make_unique<ChildProcess>(arguments, environment_);
}

} // namespace hollowfernpike::test
