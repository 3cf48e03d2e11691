#include "platform/wayland/recorder/ShortcutsInhibitor.h"

#include "platform/freedesktop/Logging.h"
#include "platform/wayland/ToolkitWindow.h"

#include <keyboard-shortcuts-inhibit-unstable-v1-client-protocol.h>
#include <wayland-client.h>

namespace hollowfernpike::wayland {

namespace {

constexpr zwp_keyboard_shortcuts_inhibitor_v1_listener logListener{
    .active =
        [](void*, zwp_keyboard_shortcuts_inhibitor_v1*) {
            qCDebug(freedesktop::keysLog, "our window gets the compositor's combinations");
        },
    .inactive =
        [](void*, zwp_keyboard_shortcuts_inhibitor_v1*) {
            qCDebug(freedesktop::keysLog, "the compositor keeps its combinations");
        },
};

} // namespace

ShortcutsInhibitor::ShortcutsInhibitor(wl_surface* surface)
    : surface_(surface),
      manager_(zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1, [this] { inhibit(); }) {}

ShortcutsInhibitor::~ShortcutsInhibitor() {
    if (inhibitor_ != nullptr) {
        qCDebug(freedesktop::keysLog, "our window gives the compositor's combinations back");
        zwp_keyboard_shortcuts_inhibitor_v1_destroy(inhibitor_);
        zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(
            manager_.get<zwp_keyboard_shortcuts_inhibit_manager_v1>());
    }
}

void ShortcutsInhibitor::inhibit() {
    inhibitor_ = zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(
        manager_.get<zwp_keyboard_shortcuts_inhibit_manager_v1>(), surface_, toolkitSeat());
    zwp_keyboard_shortcuts_inhibitor_v1_add_listener(inhibitor_, &logListener, nullptr);
    wl_display_flush(toolkitDisplay());
}

} // namespace hollowfernpike::wayland
