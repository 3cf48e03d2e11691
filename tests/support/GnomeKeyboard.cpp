#include "support/GnomeKeyboard.h"

#include "support/SeatKeymap.h"
#include "support/WaitUntil.h"
#include "support/WaylandConnection.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace hollowfernpike::test {

namespace {

constexpr const char* service = "org.gnome.Mutter.RemoteDesktop";
constexpr const char* serviceObject = "/org/gnome/Mutter/RemoteDesktop";
constexpr const char* sessionInterface = "org.gnome.Mutter.RemoteDesktop.Session";

/// A method of an object of the service; its answer is the caller's, null if it fails.
GVariant* call(GDBusConnection* bus, const std::string& object, const char* interface,
               const char* method, GVariant* arguments) {
    return g_dbus_connection_call_sync(bus, service, object.c_str(), interface, method, arguments,
                                       nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr,
                                       nullptr);
}

} // namespace

GnomeKeyboard::GnomeKeyboard(GnomeDesktop& desktop)
    : Keyboard(desktop.layout()), desktop_(desktop) {
    reconnect();
}

GnomeKeyboard::~GnomeKeyboard() {
    letAllGo();
    if (GVariant* const answer =
            call(desktop_.busConnection(), session_, sessionInterface, "Stop", nullptr)) {
        g_variant_unref(answer);
    }
}

// The service takes calls some time after the shell does.
void GnomeKeyboard::reconnect() {
    GVariant* session = nullptr;
    const auto isCreated = [&] {
        session = call(desktop_.busConnection(), serviceObject, service, "CreateSession", nullptr);
        return session != nullptr;
    };
    if (!waitUntil(isCreated)) {
        throw std::runtime_error("GNOME Shell takes no keyboard");
    }
    const char* path = nullptr;
    g_variant_get(session, "(&o)", &path);
    session_ = path;
    g_variant_unref(session);
    GVariant* const started =
        call(desktop_.busConnection(), session_, sessionInterface, "Start", nullptr);
    if (started == nullptr) {
        throw std::runtime_error("GNOME Shell does not start a keyboard");
    }
    g_variant_unref(started);
    map() = KeyboardMap(desktop_.layout());
    strike({"LFSH"}); // the seat has a keyboard only from its first key on
    waitForMap();
}

void GnomeKeyboard::use(const KeyboardLayout& layout) {
    letAllGo();
    openLocks();
    map() = KeyboardMap(layout);
    desktop_.use(layout);
    waitForMap();
}

void GnomeKeyboard::lockGroup(std::uint32_t group) {
    sync();
    desktop_.evaluate("Main.panel.statusArea.keyboard._inputSourceManager.inputSources[" +
                      std::to_string(group) + "].activate(false); 0");
}

// A shell that has gone has nothing left to take.
void GnomeKeyboard::sync() const {
    if (GVariant* const answer =
            call(desktop_.busConnection(), serviceObject, "org.freedesktop.DBus.Properties", "Get",
                 g_variant_new("(ss)", service, "Version"))) {
        g_variant_unref(answer);
    }
}

void GnomeKeyboard::sendKey(std::uint32_t keycode, bool isDown) {
    g_dbus_connection_call(desktop_.busConnection(), service, session_.c_str(), sessionInterface,
                           "NotifyKeyboardKeycode",
                           g_variant_new("(ub)", keycode - kernelOffset, isDown ? TRUE : FALSE),
                           nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
    g_dbus_connection_flush_sync(desktop_.busConnection(), nullptr, nullptr);
    map().update(keycode, isDown);
}

void GnomeKeyboard::waitForMap() const {
    WaylandConnection connection(desktop_.waylandSocket());
    SeatKeymap keymap(connection);
    std::string different;
    const auto isInForce = [&] {
        return keymap.isThere() && (different = map().differenceFrom(keymap.text())).empty();
    };
    if (!waitUntil(isInForce)) {
        throw std::runtime_error("GNOME Shell has another keyboard map: key " + different);
    }
}

} // namespace hollowfernpike::test
