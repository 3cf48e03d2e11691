#include "support/WlrootsDesktop.h"

#include "support/SwayIpc.h"
#include "support/WaylandConnection.h"
#include "support/WriteFile.h"

#include <csignal>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

/// Of a compositor without devices, graphics card and seat service.
Environment changesForCompositor(const std::string& controlSocket) {
    return {{"WLR_BACKENDS", "headless"},
            {"WLR_LIBINPUT_NO_DEVICES", "1"},
            {"WLR_RENDERER", "pixman"},
            {"LIBSEAT_BACKEND", "noop"},
            {"SWAYSOCK", controlSocket}};
}

} // namespace

WlrootsDesktop::WlrootsDesktop(WlrootsCompositor kind, const fs::path& program,
                               const std::vector<KeyCommand>& commands)
    : WaylandDesktop(std::make_shared<TemporaryDirectory>(), BusOwner::sessionUser,
                     {{"XDG_CURRENT_DESKTOP",
                       kind == WlrootsCompositor::labwc ? "labwc:wlroots" : "Elsewhere"}}),
      kind_(kind) {
    std::string lines;
    for (const auto& command : commands) {
        lines += lineOf(command, lend(program)) + '\n';
    }
    configure(lines);
    runCompositor();
}

void WlrootsDesktop::bindKeys(const std::string& lines) {
    configure(lines);
    giveFolders();
    if (kind_ == WlrootsCompositor::labwc) {
        compositor().signal(SIGHUP);
    } else {
        SwayIpc(controlSocket()).command("reload");
    }
}

std::unique_ptr<ChildProcess> WlrootsDesktop::startCompositor() {
    return start(kind_ == WlrootsCompositor::labwc
                     ? std::vector<std::string>{"labwc"}
                     : std::vector<std::string>{"sway", "--config", configurationFile()},
                 changesForCompositor(controlSocket()));
}

fs::path WlrootsDesktop::configurationFile() const {
    return home() / ".config" /
           (kind_ == WlrootsCompositor::labwc ? "labwc/rc.xml" : "sway/config");
}

std::string WlrootsDesktop::lineOf(const KeyCommand& command, const fs::path& program) const {
    const auto line = program.string() + ' ' + command.arguments;
    return kind_ == WlrootsCompositor::labwc
               ? "<keybind key=\"" + command.labwcKey + R"("><action name="Execute" command=")" +
                     line + "\"/></keybind>"
               : "bindcode " + command.swayKey + " exec " + line;
}

void WlrootsDesktop::configure(const std::string& lines) const {
    writeFile(configurationFile(),
              kind_ == WlrootsCompositor::labwc
                  ? "<?xml version=\"1.0\"?>\n<labwc_config><keyboard>\n" + lines +
                        "\n</keyboard></labwc_config>\n"
                  : "xwayland disable\nswaybg_command -\noutput * resolution 1280x720\n" + lines +
                        '\n');
}

bool WlrootsDesktop::isReady() {
    const auto socket = waylandSocketIn(runtime());
    if (socket.empty()) {
        return false;
    }
    nameSocket(socket);
    return WaylandConnection(socket).offers("zwp_virtual_keyboard_manager_v1");
}

} // namespace hollowfernpike::test
