#include "support/WestonDesktop.h"

#include "support/WaylandConnection.h"

#include <string>

namespace hollowfernpike::test {

WestonDesktop::WestonDesktop()
    : WaylandDesktop(std::make_shared<TemporaryDirectory>(), BusOwner::tests,
                     {{"XDG_CURRENT_DESKTOP", "weston"}}) {
    nameSocket(runtime() / "wayland-1");
    runCompositor();
}

// The small shell: the other one starts programs of its own.
std::unique_ptr<ChildProcess> WestonDesktop::startCompositor() {
    return start({"weston", "--backend=headless-backend.so", "--shell=kiosk-shell.so",
                  "--no-config", "--idle-time=0",
                  "--socket=" + environment().at("WAYLAND_DISPLAY").value()});
}

bool WestonDesktop::isReady() {
    return WaylandConnection(waylandSocket()).offers("xdg_wm_base");
}

} // namespace hollowfernpike::test
