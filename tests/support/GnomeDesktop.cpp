#include "support/GnomeDesktop.h"

#include "support/WriteFile.h"

#include <sstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* shellSocket = "wayland-0";
constexpr int mostAttempts = 2; // on a busy machine the shell sometimes does not get there
constexpr const char* extensions =
    "['hollowfernpike@app.hollowfernpike', 'hollowfernpike-43@app.hollowfernpike']";

/// Of a shell without a graphics card and without the services of the system.
Environment changesForShell(const std::string& bus) {
    return {{"WAYLAND_DISPLAY", std::nullopt},
            {"DBUS_SYSTEM_BUS_ADDRESS", bus},
            {"GNOME_SHELL_SESSION_MODE", "user"},
            {"LIBGL_ALWAYS_SOFTWARE", "1"},
            {"MESA_DISK_CACHE_MULTI_FILE", "1"}}; // as it is kept
}

/// "us,us(dvorak)" as GNOME's settings write it.
std::string sourcesOf(const KeyboardLayout& layout) {
    std::string sources;
    std::istringstream rest(layout.layouts);
    for (std::string one; std::getline(rest, one, ',');) {
        if (const auto bracket = one.find('('); bracket != std::string::npos) {
            one = one.substr(0, bracket) + '+' + one.substr(bracket + 1, one.size() - bracket - 2);
        }
        sources += (sources.empty() ? "('xkb', '" : ", ('xkb', '") + one + "')";
    }
    return '[' + sources + ']';
}

std::string optionsOf(const KeyboardLayout& layout) {
    return layout.options.empty() ? "@as []" : "['" + layout.options + "']";
}

std::string toText(bool value) {
    return value ? "true" : "false";
}

} // namespace

GnomeDesktop::GnomeDesktop(const GnomeSettings& settings)
    : WaylandDesktop(settings.home, BusOwner::sessionUser,
                     {{"WAYLAND_DISPLAY", shellSocket},
                      {"XDG_CURRENT_DESKTOP", "GNOME"},
                      {"GSETTINGS_BACKEND", "keyfile"}},
                     mostAttempts),
      settings_(settings), busConnection_(connectToBus(bus().address())) {
    nameSocket(runtime() / shellSocket);
    writeSettings();
    for (const auto& part : settings.shown) {
        showOfMachine(part);
    }
    if (settings.hasExtension) {
        installExtension();
    }
    runCompositor();
}

// The shell writes its shaders to the end, and then they are kept.
GnomeDesktop::~GnomeDesktop() {
    endCompositor();
}

nlohmann::json GnomeDesktop::evaluate(const std::string& script) const {
    GError* error = nullptr;
    GVariant* const answer = g_dbus_connection_call_sync(
        busConnection_.get(), "org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell", "Eval",
        g_variant_new("(s)", script.c_str()), G_VARIANT_TYPE("(bs)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, &error);
    if (answer == nullptr) {
        const std::string message = error->message;
        g_error_free(error);
        throw std::runtime_error("GNOME Shell: " + message);
    }
    gboolean isDone = FALSE;
    const char* text = nullptr;
    g_variant_get(answer, "(b&s)", &isDone, &text);
    const std::string result = text;
    g_variant_unref(answer);
    if (isDone == FALSE) {
        throw std::runtime_error("GNOME Shell: " + result + " in " + script);
    }
    return result.empty() ? nlohmann::json{} : nlohmann::json::parse(result);
}

void GnomeDesktop::use(const KeyboardLayout& layout) {
    settings_.layout = layout;
    evaluate("const {Gio, GLib} = imports.gi;"
             "const settings = new Gio.Settings({schema_id: 'org.gnome.desktop.input-sources'});"
             "settings.set_strv('xkb-options', " +
             (layout.options.empty() ? "[]" : "['" + layout.options + "']") +
             ");"
             "settings.set_value('sources', GLib.Variant.parse(null, \"" +
             sourcesOf(layout) + "\", null, null)); 0");
}

void GnomeDesktop::installExtension() const {
    const auto target = dataHome() / "gnome-shell/extensions";
    fs::create_directories(target);
    fs::copy(HFP_SHELL_EXTENSIONS, target, fs::copy_options::recursive);
    giveFolders();
}

bool GnomeDesktop::hasModules() const {
    constexpr int firstRelease = 45;
    GVariant* const answer = g_dbus_connection_call_sync(
        busConnection_.get(), "org.gnome.Shell", "/org/gnome/Shell",
        "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", "org.gnome.Shell", "ShellVersion"), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr);
    if (answer == nullptr) {
        throw std::runtime_error("GNOME Shell does not tell its version");
    }
    GVariant* version = nullptr;
    g_variant_get(answer, "(v)", &version);
    const int release = std::stoi(g_variant_get_string(version, nullptr));
    g_variant_unref(version);
    g_variant_unref(answer);
    return release >= firstRelease;
}

std::string GnomeDesktop::extension() const {
    return hasModules() ? "hollowfernpike@app.hollowfernpike"
                        : "hollowfernpike-43@app.hollowfernpike";
}

void GnomeDesktop::takePicture(const fs::path& file) const {
    const auto own = home() / file.filename(); // where the shell may write
    callOnBus(environment(), {"org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot",
                              "org.gnome.Shell.Screenshot.Screenshot", "false", "false", own});
    fs::create_directories(file.parent_path());
    fs::copy_file(own, file, fs::copy_options::overwrite_existing);
}

void GnomeDesktop::writeSettings() const {
    writeFile(home() / ".config/glib-2.0/settings/keyfile",
              "[org/gnome/shell]\n"
              "welcome-dialog-last-shown-version='999'\n"
              "disable-user-extensions=" +
                  toText(!settings_.allowsExtensions) +
                  "\n"
                  "enabled-extensions=" +
                  (settings_.enablesExtension ? extensions : "@as []") +
                  "\n"
                  "[org/gnome/mutter]\n"
                  "dynamic-workspaces=false\n"
                  "[org/gnome/desktop/wm/preferences]\n"
                  "num-workspaces=2\n"
                  "[org/gnome/desktop/interface]\n"
                  "enable-animations=false\n"
                  "[org/gnome/desktop/input-sources]\n"
                  "sources=" +
                  sourcesOf(settings_.layout) + "\nxkb-options=" + optionsOf(settings_.layout) +
                  '\n');
}

// The processor draws what is on the monitor, so that is small and slow.
std::unique_ptr<ChildProcess> GnomeDesktop::startCompositor() {
    return start({"gnome-shell", "--wayland", "--headless", "--virtual-monitor", "800x600@30",
                  "--no-x11", "--wayland-display", shellSocket, "--unsafe-mode"},
                 changesForShell(bus().address()));
}

// It opens the overview when it has started, and gives no window the keys as long as that is open.
bool GnomeDesktop::isReady() {
    return evaluate("if (!Main.layoutManager._startingUp) Main.overview.hide();"
                    "!Main.layoutManager._startingUp && !Main.overview.visible")
        .get<bool>();
}

} // namespace hollowfernpike::test
