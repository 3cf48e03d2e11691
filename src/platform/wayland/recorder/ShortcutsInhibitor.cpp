#include "platform/wayland/recorder/ShortcutsInhibitor.h"

#include "platform/freedesktop/Logging.h"
#include "platform/wayland/ToolkitWindow.h"

#include <cstdint>
#include <string_view>

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

// The toolkit does not tell of globals that it does not use, so this asks with a registry of its
// own. The answer comes with the toolkit's events.
ShortcutsInhibitor::ShortcutsInhibitor(wl_surface* surface)
    : surface_(surface), registry_(wl_display_get_registry(toolkitDisplay())) {
    static constexpr wl_registry_listener listener{
        .global =
            [](void* self, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t) {
                if (std::string_view{interface} ==
                    zwp_keyboard_shortcuts_inhibit_manager_v1_interface.name) {
                    static_cast<ShortcutsInhibitor*>(self)->inhibit(registry, name);
                }
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    wl_registry_add_listener(registry_, &listener, this);
    wl_display_flush(toolkitDisplay());
}

ShortcutsInhibitor::~ShortcutsInhibitor() {
    if (inhibitor_ != nullptr) {
        qCDebug(freedesktop::keysLog, "our window gives the compositor's combinations back");
        zwp_keyboard_shortcuts_inhibitor_v1_destroy(inhibitor_);
        zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(manager_);
    }
    wl_registry_destroy(registry_);
    wl_display_flush(toolkitDisplay());
}

void ShortcutsInhibitor::inhibit(wl_registry* registry, unsigned name) {
    manager_ = static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1*>(
        wl_registry_bind(registry, name, &zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1));
    inhibitor_ = zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(manager_, surface_,
                                                                             toolkitSeat());
    zwp_keyboard_shortcuts_inhibitor_v1_add_listener(inhibitor_, &logListener, nullptr);
    wl_display_flush(toolkitDisplay());
}

} // namespace hollowfernpike::wayland
