#include "support/WestonDesktop.h"

#include "support/WaitUntil.h"
#include "support/WaylandConnection.h"

#include <optional>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

constexpr const char* westonSocket = "wayland-1";

Environment environmentOnWeston(const SessionFolders& folders) {
    auto environment = folders.environment();
    environment["DISPLAY"] = std::nullopt;
    environment["XAUTHORITY"] = std::nullopt;
    environment["SWAYSOCK"] = std::nullopt;
    environment["WAYLAND_DISPLAY"] = westonSocket;
    environment["XDG_CURRENT_DESKTOP"] = "weston";
    environment["XDG_SESSION_TYPE"] = "wayland";
    return environment;
}

} // namespace

WestonDesktop::WestonDesktop() : environment_(environmentOnWeston(folders_)), bus_(environment_) {
    environment_["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
    // The small shell: the other one starts programs of its own.
    weston_ = start({"weston", "--backend=headless-backend.so", "--shell=kiosk-shell.so",
                     "--no-config", "--idle-time=0", "--socket=" + std::string{westonSocket}});
    bool hasEnded = false;
    const auto isDecided = [&] { return (hasEnded = weston_->hasEnded()) || isReady(); };
    if (!waitUntil(isDecided) || hasEnded) {
        throw std::runtime_error("weston did not start: " + weston_->output() + weston_->errors());
    }
}

std::unique_ptr<ChildProcess> WestonDesktop::start(const std::vector<std::string>& arguments,
                                                   const Environment& changes) const {
    return std::make_unique<ChildProcess>(arguments, changed(environment_, changes));
}

bool WestonDesktop::isReady() const {
    try {
        return WaylandConnection(folders_.runtime() / westonSocket).offers("xdg_wm_base");
    } catch (const std::runtime_error&) {
        return false;
    }
}

} // namespace hollowfernpike::test
