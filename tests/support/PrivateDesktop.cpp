#include "support/PrivateDesktop.h"

#include "support/WaitUntil.h"

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

Environment sessionEnvironment(const SessionFolders& folders, const std::string& display) {
    auto environment = folders.environment();
    environment["DISPLAY"] = display;
    environment["XAUTHORITY"] = (folders.home() / ".Xauthority").string();
    environment["XDG_SESSION_TYPE"] = "x11";
    return environment;
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

PrivateDesktop::PrivateDesktop(const std::string& windowManager, ScreenSize size, Home home)
    : folders_(std::move(home)), display_({}, size),
      environment_(sessionEnvironment(folders_, display_.name())), bus_(environment_) {
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

std::unique_ptr<ChildProcess> PrivateDesktop::start(const std::vector<std::string>& arguments,
                                                    const Environment& changes) const {
    return std::make_unique<ChildProcess>(arguments, changed(environment_, changes));
}

std::string callOnBus(const PrivateDesktop& desktop, const std::vector<std::string>& arguments) {
    return callOnBus(desktop.environment(), arguments);
}

} // namespace hollowfernpike::test
