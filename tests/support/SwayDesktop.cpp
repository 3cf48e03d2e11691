#include "support/SwayDesktop.h"

#include "support/SessionUser.h"
#include "support/WaylandConnection.h"
#include "support/WriteFile.h"

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

} // namespace

SwayDesktop::SwayDesktop(const std::string& configuration, Home home)
    : WaylandDesktop(std::move(home), BusOwner::tests, {{"XDG_CURRENT_DESKTOP", "sway"}}) {
    setVariable("SWAYSOCK", controlSocket());
    configure(configuration);
    runCompositor();
    // The session's own runtime directory must be its user's, so it has only a way to the socket.
    const auto name = fs::path(waylandSocket()).filename();
    fs::remove(runtime() / name);
    fs::create_symlink(waylandSocket(), runtime() / name);
}

void SwayDesktop::configure(const std::string& configuration) const {
    writeFile(configurationFile(), everyConfiguration + configuration + '\n');
    fs::permissions(configurationFile(), fs::perms::others_read, fs::perm_options::add);
}

std::unique_ptr<ChildProcess> SwayDesktop::startCompositor() {
    return std::make_unique<ChildProcess>(asSessionUser({"sway", "--config", configurationFile()}),
                                          environmentOfSway(environment(), commonGround()));
}

bool SwayDesktop::isReady() {
    const auto socket = waylandSocketIn(commonGround());
    if (socket.empty()) {
        return false;
    }
    nameSocket(socket);
    const WaylandConnection client(socket);
    return client.offers("xdg_wm_base") && client.offers("zwp_virtual_keyboard_manager_v1") &&
           !ipc_.version().empty() && !ipc_.workspaces().empty();
}

} // namespace hollowfernpike::test
