#include "support/KWinDesktop.h"

#include "support/WaylandConnection.h"
#include "support/WriteFile.h"

#include <cstdlib>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* socketName = "wayland-0";
constexpr const char* keyboardName = "org.kde.keyboard";
constexpr const char* layoutsPath = "/Layouts";

/// KWin looks for entries among those of the user's menu.
constexpr const char* menu =
    R"(<!DOCTYPE Menu PUBLIC "-//freedesktop//DTD Menu 1.0//EN"
 "http://www.freedesktop.org/standards/menu-spec/1.0/menu.dtd">
<Menu><Name>Applications</Name><DefaultAppDirs/><Include><All/></Include></Menu>
)";

/// Of a compositor without a graphics card. KWin shows nothing of its own, so its looks do not
/// matter, and the toolkit's stand-in for KDE's is not up to being used in a compositor.
Environment changesForKWin() {
    return {{"WAYLAND_DISPLAY", std::nullopt},
            {"XDG_CURRENT_DESKTOP", "X-Generic"},
            {"QT_QPA_PLATFORMTHEME", "generic"},
            {"KWIN_COMPOSE", "Q"},
            {"LIBGL_ALWAYS_SOFTWARE", "1"}};
}

/// "us,us(dvorak)" as KDE's settings write it.
std::string configurationOf(const KeyboardLayout& layout) {
    std::string names;
    std::string variants;
    std::istringstream rest(layout.layouts);
    for (std::string one; std::getline(rest, one, ',');) {
        const auto bracket = one.find('(');
        names += one.substr(0, bracket) + ',';
        if (bracket != std::string::npos) {
            variants += one.substr(bracket + 1, one.size() - bracket - 2);
        }
        variants += ',';
    }
    names.pop_back();
    variants.pop_back();
    return "[Layout]\nUse=true\nModel=pc105\nResetOldOptions=true\nLayoutList=" + names +
           "\nVariantList=" + variants + "\nOptions=" + layout.options + '\n';
}

std::string configurationOf(int desktops) {
    auto text = "[Desktops]\nRows=1\nNumber=" + std::to_string(desktops) + '\n';
    for (int number = 1; number <= desktops; ++number) {
        const auto name = std::to_string(number);
        text.append("Id_").append(name).append("=desktop-").append(name).append("\n");
        text.append("Name_").append(name).append("=Desktop ").append(name).append("\n");
    }
    return text;
}

/// KWin 6 takes what the user has set for the screen before what its command line says.
std::string screenOfScale(int scale) {
    return R"([{"name": "setups", "data": []}, {"name": "outputs",
 "data": [{"connectorName": "Virtual-0", "scale": )" +
           std::to_string(scale) + "}]}]\n";
}

fs::path findProgram(const std::string& name) {
    std::istringstream folders(std::getenv("PATH"));
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (fs::exists(fs::path(folder) / name)) {
            return fs::path(folder) / name;
        }
    }
    throw std::runtime_error("there is no " + name);
}

} // namespace

KWinDesktop::KWinDesktop(const KWinSettings& settings, Home home)
    : WaylandDesktop(std::move(home), BusOwner::sessionUser,
                     {{"WAYLAND_DISPLAY", socketName},
                      {"XDG_CURRENT_DESKTOP", "KDE"},
                      {"KWIN_WAYLAND_NO_PERMISSION_CHECKS", std::nullopt}}),
      settings_(settings), busConnection_(connectToBus(bus().address())) {
    nameSocket(runtime() / socketName);
    writeFile(configurationFile("menus/applications.menu"), menu);
    writeFile(configurationFile("kxkbrc"), configurationOf(settings.layout));
    writeFile(configurationFile("kwinrc"), configurationOf(settings.desktops));
    writeFile(configurationFile("kwinoutputconfig.json"), screenOfScale(settings.scale));
    grant({.identifier = "connection-lender",
           .program = HFP_CONNECTION_LENDER,
           .interfaces = "org_kde_kwin_fake_input,org_kde_plasma_window_management"});
    for (const auto& right : settings.rights) {
        grant(right);
    }
    // The program's own right to real-time priority is not to be had everywhere; a copy has none.
    fs::copy_file(findProgram("kwin_wayland"), ground() / "kwin_wayland");
    runCompositor();
}

int KWinDesktop::version() const {
    const std::string beginning = "kwin ";
    const auto line =
        start({ground() / "kwin_wayland", "--version"}, changesForKWin())->waitForLine(beginning);
    if (!line) {
        throw std::runtime_error("KWin does not tell its version");
    }
    return std::stoi(line->substr(beginning.size()));
}

LentSocket KWinDesktop::lendSocket() const {
    return {[this](const auto& commandLine) { return start(commandLine); },
            lend(HFP_CONNECTION_LENDER), ground() / "borrower"};
}

void KWinDesktop::grant(const KWinRight& right) const {
    writeFile(applications() / (right.identifier + ".desktop"),
              "[Desktop Entry]\nType=Application\nNoDisplay=true\nName=" + right.identifier +
                  "\nExec=" + lend(right.program).string() +
                  "\nX-KDE-Wayland-Interfaces=" + right.interfaces + '\n');
}

void KWinDesktop::use(const KeyboardLayout& layout) {
    settings_.layout = layout;
    writeFile(configurationFile("kxkbrc"), configurationOf(layout));
    giveFolders();
    g_dbus_connection_emit_signal(busConnection_.get(), nullptr, layoutsPath, keyboardName,
                                  "reloadConfig", nullptr, nullptr);
    g_dbus_connection_flush_sync(busConnection_.get(), nullptr, nullptr);
}

void KWinDesktop::lockGroup(std::uint32_t group) const {
    if (!isConfirmed({keyboardName, layoutsPath, "org.kde.KeyboardLayouts", "setLayout"},
                     g_variant_new("(u)", group))) {
        throw std::runtime_error("KWin does not switch to layout " + std::to_string(group));
    }
}

fs::path KWinDesktop::configurationFile(const std::string& name) const {
    return home() / ".config" / name;
}

std::unique_ptr<ChildProcess> KWinDesktop::startCompositor() {
    return start({ground() / "kwin_wayland", "--virtual", "--no-lockscreen", "--width", "1280",
                  "--height", "720", "--scale", std::to_string(settings_.scale), "--socket",
                  socketName},
                 changesForKWin());
}

// It takes calls for key combinations only after it has begun to take clients.
bool KWinDesktop::isReady() {
    return WaylandConnection(waylandSocket()).offers("xdg_wm_base") &&
           isConfirmed({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                        "NameHasOwner"},
                       g_variant_new("(s)", "org.kde.kglobalaccel"));
}

bool KWinDesktop::isConfirmed(const Method& method, GVariant* arguments) const {
    gboolean isTrue = FALSE;
    if (GVariant* const answer = g_dbus_connection_call_sync(
            busConnection_.get(), method.owner, method.object, method.interface, method.name,
            arguments, G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr,
            nullptr)) {
        g_variant_get(answer, "(b)", &isTrue);
        g_variant_unref(answer);
    }
    return isTrue != FALSE;
}

} // namespace hollowfernpike::test
