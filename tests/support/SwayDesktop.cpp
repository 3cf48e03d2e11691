#include "support/SwayDesktop.h"

#include "support/SessionUser.h"
#include "support/WaitUntil.h"
#include "support/WaylandConnection.h"
#include "support/WriteFile.h"

#include <stdexcept>
#include <utility>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

/// Xwayland would make this a session with an X server, too, which hides what fails without one.
/// Nobody looks at the background.
constexpr const char* everyConfiguration = "xwayland disable\n"
                                           "swaybg_command -\n"
                                           "output * resolution 1280x720\n";

Environment environmentIn(const SessionFolders& folders, const std::string& controlSocket) {
    auto environment = folders.environment();
    environment["DISPLAY"] = std::nullopt;
    environment["XAUTHORITY"] = std::nullopt;
    environment["SWAYSOCK"] = controlSocket;
    environment["XDG_CURRENT_DESKTOP"] = "sway";
    environment["XDG_SESSION_TYPE"] = "wayland";
    return environment;
}

/// Of a compositor without devices, graphics card and seat service.
Environment environmentOfSway(Environment session, const std::string& ground) {
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        session[folder] = ground;
    }
    session["WAYLAND_DISPLAY"] = std::nullopt;
    session["WLR_BACKENDS"] = "headless";
    session["WLR_LIBINPUT_NO_DEVICES"] = "1";
    session["WLR_RENDERER"] = "pixman";
    session["LIBSEAT_BACKEND"] = "noop";
    return session;
}

/// The socket for Wayland clients in this directory; empty until there is one.
fs::path waylandSocketIn(const fs::path& directory) {
    for (const auto& entry : fs::directory_iterator(directory)) {
        if (entry.is_socket() && entry.path().filename().string().starts_with("wayland-")) {
            return entry.path();
        }
    }
    return {};
}

bool answersClients(const std::string& socket) {
    try {
        const WaylandConnection client(socket);
        return client.offers("xdg_wm_base") && client.offers("zwp_virtual_keyboard_manager_v1");
    } catch (const std::runtime_error&) {
        return false;
    }
}

bool answersQuestions(const SwayIpc& ipc) {
    try {
        return !ipc.version().empty() && !ipc.workspaces().empty();
    } catch (const std::runtime_error&) {
        return false;
    }
}

} // namespace

SwayDesktop::SwayDesktop(const std::string& configuration, Home home)
    : folders_(std::move(home)), environment_(environmentIn(folders_, controlSocket())),
      bus_(environment_), ipc_(controlSocket()) {
    environment_["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
    configure(configuration);
    giveToSessionUser(commonGround());
    sway_ = startSway();
    bool hasEnded = false;
    const auto isDecided = [&] { return (hasEnded = sway_->hasEnded()) || isReady(); };
    if (!waitUntil(isDecided) || hasEnded) {
        throw std::runtime_error("sway did not start: " + sway_->errors());
    }
    // The session's own runtime directory must be its user's, so it has only a way to the socket.
    const auto name = fs::path(waylandSocket_).filename();
    fs::remove(folders_.runtime() / name);
    fs::create_symlink(waylandSocket_, folders_.runtime() / name);
    environment_["WAYLAND_DISPLAY"] = name;
}

void SwayDesktop::configure(const std::string& configuration) const {
    writeFile(configurationFile(), everyConfiguration + configuration + '\n');
    fs::permissions(configurationFile(), fs::perms::others_read, fs::perm_options::add);
}

std::unique_ptr<ChildProcess> SwayDesktop::start(const std::vector<std::string>& arguments,
                                                 const Environment& changes) const {
    return std::make_unique<ChildProcess>(arguments, changed(environment_, changes));
}

std::unique_ptr<ChildProcess> SwayDesktop::startSway() const {
    return std::make_unique<ChildProcess>(asSessionUser({"sway", "--config", configurationFile()}),
                                          environmentOfSway(environment_, commonGround()));
}

bool SwayDesktop::isReady() {
    waylandSocket_ = waylandSocketIn(commonGround());
    return !waylandSocket_.empty() && answersClients(waylandSocket_) && answersQuestions(ipc_);
}

} // namespace hollowfernpike::test
