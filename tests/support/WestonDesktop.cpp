#include "support/WestonDesktop.h"

#include "support/WaylandConnection.h"

#include <memory>
#include <string>

namespace hollowfernpike::test {

namespace {

constexpr const char* westonSocket = "wayland-1";

} // namespace

WestonDesktop::WestonDesktop()
    : WaylandDesktop(std::make_shared<TemporaryDirectory>(), BusOwner::tests,
                     {{"WAYLAND_DISPLAY", westonSocket}, {"XDG_CURRENT_DESKTOP", "weston"}}) {
    nameSocket(runtime() / westonSocket);
    runCompositor();
}

// The small shell: the other one starts programs of its own.
std::unique_ptr<ChildProcess> WestonDesktop::startCompositor() {
    return start({"weston", "--backend=headless-backend.so", "--shell=kiosk-shell.so",
                  "--no-config", "--idle-time=0", "--socket=" + std::string{westonSocket}});
}

bool WestonDesktop::isReady() {
    return WaylandConnection(waylandSocket()).offers("xdg_wm_base");
}

} // namespace hollowfernpike::test
