#include "support/PrivateDesktop.h"

#include "support/WaitUntil.h"
#include "support/WriteFile.h"

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

namespace hollowfernpike::test {

namespace {

/// A window that shows whether a window manager is at work. A name on the root is no proof: window
/// managers write it some time before they serve anybody.
class TrialWindow {
public:
    explicit TrialWindow(const std::string& display)
        : connection_(xcb_connect(display.c_str(), nullptr)) {
        xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr);
        window_ = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, ewmh_.screens[0]->root, 0, 0,
                          1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    TrialWindow(const TrialWindow&) = delete;
    TrialWindow& operator=(const TrialWindow&) = delete;
    ~TrialWindow() {
        xcb_ewmh_connection_wipe(&ewmh_);
        xcb_disconnect(connection_);
    }

    /// Asks to be shown, again with every call, because a request made too early may lie unread
    /// until the next.
    bool isManaged() {
        xcb_map_window(connection_, window_);
        return managedWindows() > 0;
    }

    bool isForgotten() {
        xcb_destroy_window(connection_, window_);
        return managedWindows() == 0;
    }

private:
    std::uint32_t managedWindows() {
        xcb_ewmh_get_windows_reply_t windows{};
        const auto question = xcb_ewmh_get_client_list(&ewmh_, 0);
        if (xcb_ewmh_get_client_list_reply(&ewmh_, question, &windows, nullptr) == 0) {
            return 0;
        }
        const auto count = windows.windows_len;
        xcb_ewmh_get_windows_reply_wipe(&windows);
        return count;
    }

    xcb_connection_t* connection_;
    xcb_ewmh_connection_t ewmh_{};
    xcb_window_t window_ = XCB_NONE;
};

bool waitForWindowManager(const std::string& display) {
    TrialWindow window(display);
    return waitUntil([&] { return window.isManaged(); }) &&
           waitUntil([&] { return window.isForgotten(); });
}

std::vector<std::string> commandOf(const std::string& windowManager) {
    const bool choosesItsDisplayServer =
        windowManager == "mutter" || windowManager == "gnome-shell";
    return choosesItsDisplayServer ? std::vector<std::string>{windowManager, "--x11"}
                                   : std::vector<std::string>{windowManager};
}

/// Whole desktops want a system bus, and draw with the graphics card unless that is forbidden.
Environment environmentOf(Environment session) {
    session["DBUS_SYSTEM_BUS_ADDRESS"] = session.at("DBUS_SESSION_BUS_ADDRESS");
    session["LIBGL_ALWAYS_SOFTWARE"] = "1";
    return session;
}

namespace fs = std::filesystem;

constexpr std::array sharedData{"cinnamon",
                                "dbus-1/services/org.a11y.Bus.service",
                                "dbus-1/services/org.cinnamon.ScreenSaver.service",
                                "dbus-1/services/org.xfce.Xfconf.service",
                                "glib-2.0",
                                "icons/Adwaita",
                                "icons/breeze",
                                "icons/breeze-dark",
                                "icons/default",
                                "mime",
                                "themes/Adwaita",
                                "themes/Clearlooks",
                                "themes/Default",
                                "xfce4"};
constexpr std::array sharedConfiguration{"menus", "openbox", "tint2", "xfce4"};

/// The folders for all users, as a session knows them.
fs::path dataIn(const fs::path& shared) {
    return shared / "data";
}
fs::path configurationIn(const fs::path& shared) {
    return shared / "configuration";
}

void share(const fs::path& original, const fs::path& seen) {
    fs::create_directories(seen.parent_path());
    fs::create_symlink(original, seen);
}

void shareParts(const fs::path& shared) {
    fs::create_directories(dataIn(shared) / "applications");
    for (const auto* part : sharedData) {
        share(fs::path("/usr/share") / part, dataIn(shared) / part);
    }
    for (const auto* part : sharedConfiguration) {
        share(fs::path("/etc/xdg") / part, configurationIn(shared) / part);
    }
}

std::string valueIn(const Environment& environment, const std::string& name) {
    const auto given = environment.find(name);
    if (given != environment.end()) {
        return given->second.value_or("");
    }
    const char* own = std::getenv(name.c_str());
    return own == nullptr ? "" : own;
}

/// That of the system's session bus, but without the machine's services.
std::string busConfiguration(const Environment& environment) {
    std::string directories;
    for (const auto* data : {"XDG_DATA_HOME", "XDG_DATA_DIRS"}) {
        directories +=
            "<servicedir>" + valueIn(environment, data) + "/dbus-1/services</servicedir>";
    }
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
           "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
           "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>" +
           directories +
           "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
           "<limit name=\"service_start_timeout\">120000</limit></busconfig>\n";
}

Environment sessionEnvironment(const fs::path& home, const fs::path& shared,
                               const std::string& display) {
    return {
        {"HOME", home.string()},
        {"DISPLAY", display},
        {"XAUTHORITY", (home / ".Xauthority").string()},
        {"XDG_DATA_HOME", (home / ".local/share").string()},
        {"XDG_DATA_DIRS", dataIn(shared).string()},
        {"XDG_CONFIG_HOME", (home / ".config").string()},
        {"XDG_CONFIG_DIRS", configurationIn(shared).string()},
        {"XDG_CACHE_HOME", (home / ".cache").string()},
        {"XDG_RUNTIME_DIR", (home / "run").string()},
        {"XDG_SESSION_TYPE", "x11"},
        {"GIO_USE_VFS", "local"},
        {"GSETTINGS_BACKEND", "memory"},
        {"NO_AT_BRIDGE", "1"},
    };
}

} // namespace

VirtualDisplay::VirtualDisplay(const std::string& name, ScreenSize size) {
    const auto screen = std::to_string(size.width) + 'x' + std::to_string(size.height) + "x24";
    std::vector<std::string> arguments{"Xvfb", "-displayfd", "1",   "-screen", "0",
                                       screen, "-nolisten",  "tcp", "-noreset"};
    if (!name.empty()) {
        arguments.insert(arguments.begin() + 1, name);
    }
    server_ = std::make_unique<ChildProcess>(arguments);
    const auto line = server_->waitForLine("");
    if (!line) {
        throw std::runtime_error("Xvfb did not start: " + server_->errors());
    }
    name_ = ':' + *line;
}

SessionBus::SessionBus(const Environment& environment) {
    const auto configuration = directory_.path() / "session.conf";
    writeFile(configuration, busConfiguration(environment));
    daemon_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration.string(),
                                 "--nofork", "--print-address=1"},
        environment);
    const auto line = daemon_->waitForLine("");
    if (!line) {
        throw std::runtime_error("dbus-daemon did not start: " + daemon_->errors());
    }
    address_ = *line;
}

PrivateDesktop::PrivateDesktop(const std::string& windowManager, ScreenSize size, Home home)
    : home_(std::move(home)), display_({}, size),
      environment_(sessionEnvironment(this->home(), shared_.path(), display_.name())), bus_([this] {
          shareParts(shared_.path());
          fs::create_directories(this->home() / "run");
          fs::create_directories(applications());
          fs::permissions(this->home() / "run", fs::perms::owner_all);
          return environment_;
      }()) {
    environment_["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
    if (windowManager.empty()) {
        return;
    }
    windowManager_ =
        std::make_unique<ChildProcess>(commandOf(windowManager), environmentOf(environment_));
    if (!waitForWindowManager(display()) ||
        (windowManager == "gnome-shell" && !closeFirstOverview())) {
        throw std::runtime_error(windowManager + " did not start: " + windowManager_->errors());
    }
}

// GNOME Shell opens it when it is ready, and gives the keys to nobody else as long as it is open.
bool PrivateDesktop::closeFirstOverview() const {
    const auto call = [this](const std::string& method, const std::vector<std::string>& value) {
        std::vector<std::string> arguments{"gdbus",
                                           "call",
                                           "--session",
                                           "--dest",
                                           "org.gnome.Shell",
                                           "--object-path",
                                           "/org/gnome/Shell",
                                           "--method",
                                           "org.freedesktop.DBus.Properties." + method,
                                           "org.gnome.Shell",
                                           "OverviewActive"};
        arguments.insert(arguments.end(), value.begin(), value.end());
        const auto caller = start(arguments);
        caller->wait();
        return caller->output();
    };
    return waitUntil([&] { return call("Get", {}) == "(<true>,)\n"; }) && waitUntil([&] {
               call("Set", {"<false>"});
               return call("Get", {}) == "(<false>,)\n";
           });
}

void PrivateDesktop::showOfMachine(const fs::path& part) const {
    share(fs::path("/usr/share") / part, dataIn(shared_.path()) / part);
}

std::unique_ptr<ChildProcess>
PrivateDesktop::start(const std::vector<std::string>& arguments) const {
    return std::make_unique<ChildProcess>(arguments, environment_);
}

std::string callOnBus(const PrivateDesktop& desktop, const std::vector<std::string>& arguments) {
    std::vector<std::string> line{"gdbus",      "call",     "--session",  "--timeout",
                                  "20",         "--dest",   arguments[0], "--object-path",
                                  arguments[1], "--method", arguments[2], "--"};
    line.insert(line.end(), arguments.begin() + 3, arguments.end());
    const auto caller = desktop.start(line);
    if (caller->wait() != 0) {
        throw std::runtime_error(arguments[2] + ": " + caller->errors());
    }
    return caller->output();
}

} // namespace hollowfernpike::test
