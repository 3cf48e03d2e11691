#include "support/WlrootsDesktop.h"

#include "support/SessionUser.h"
#include "support/SwayIpc.h"
#include "support/WaitUntil.h"
#include "support/WaylandConnection.h"
#include "support/WriteFile.h"

#include <csignal>
#include <optional>
#include <stdexcept>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

Environment environmentIn(const SessionFolders& folders, WlrootsCompositor kind) {
    auto environment = folders.environment();
    for (const char* foreign : {"DISPLAY", "XAUTHORITY", "SWAYSOCK", "WAYLAND_DISPLAY"}) {
        environment[foreign] = std::nullopt;
    }
    environment["XDG_CURRENT_DESKTOP"] =
        kind == WlrootsCompositor::labwc ? "labwc:wlroots" : "Elsewhere";
    environment["XDG_SESSION_TYPE"] = "wayland";
    return environment;
}

/// Of a compositor without devices, graphics card and seat service.
Environment changesForCompositor(const std::string& controlSocket) {
    return {{"WLR_BACKENDS", "headless"},
            {"WLR_LIBINPUT_NO_DEVICES", "1"},
            {"WLR_RENDERER", "pixman"},
            {"LIBSEAT_BACKEND", "noop"},
            {"SWAYSOCK", controlSocket}};
}

fs::path socketIn(const fs::path& directory) {
    for (const auto& entry : fs::directory_iterator(directory)) {
        if (entry.is_socket() && entry.path().filename().string().starts_with("wayland-")) {
            return entry.path();
        }
    }
    return {};
}

} // namespace

WlrootsDesktop::WlrootsDesktop(WlrootsCompositor kind, const fs::path& program,
                               const std::vector<KeyCommand>& commands)
    : kind_(kind), environment_(environmentIn(folders_, kind)),
      bus_(environment_, BusOwner::sessionUser) {
    environment_["DBUS_SESSION_BUS_ADDRESS"] = bus_.address();
    environment_["FONTCONFIG_FILE"] = lend(HFP_TEST_FONTS);
    std::string lines;
    for (const auto& command : commands) {
        lines += lineOf(command, lend(program)) + '\n';
    }
    configure(lines);
    compositor_ = start(kind_ == WlrootsCompositor::labwc
                            ? std::vector<std::string>{"labwc"}
                            : std::vector<std::string>{"sway", "--config", configurationFile()},
                        changesForCompositor(controlSocket()));
    bool hasEnded = false;
    const auto isDecided = [&] { return (hasEnded = compositor_->hasEnded()) || isReady(); };
    if (!waitUntil(isDecided) || hasEnded) {
        throw std::runtime_error("the compositor did not start: " + compositor_->errors());
    }
    environment_["WAYLAND_DISPLAY"] = fs::path(waylandSocket_).filename().string();
}

fs::path WlrootsDesktop::lend(const fs::path& file) const {
    return lendToSessionUser(file, ground_.path());
}

void WlrootsDesktop::bindKeys(const std::string& lines) {
    configure(lines);
    folders_.giveToSessionUser();
    if (kind_ == WlrootsCompositor::labwc) {
        compositor_->signal(SIGHUP);
    } else {
        SwayIpc(controlSocket()).command("reload");
    }
}

std::unique_ptr<ChildProcess> WlrootsDesktop::start(const std::vector<std::string>& commandLine,
                                                    const Environment& changes) const {
    folders_.giveToSessionUser();
    return std::make_unique<ChildProcess>(asSessionUser(commandLine),
                                          changed(environment_, changes));
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
    waylandSocket_ = socketIn(folders_.runtime());
    try {
        return !waylandSocket_.empty() &&
               WaylandConnection(waylandSocket_).offers("zwp_virtual_keyboard_manager_v1");
    } catch (const std::runtime_error&) {
        return false;
    }
}

} // namespace hollowfernpike::test
