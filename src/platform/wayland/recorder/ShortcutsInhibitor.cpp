#include "platform/wayland/recorder/ShortcutsInhibitor.h"

#include "platform/freedesktop/Logging.h"
#include "platform/wayland/ToolkitWindow.h"

#include <string_view>
#include <utility>

#include <keyboard-shortcuts-inhibit-unstable-v1-client-protocol.h>
#include <wayland-client.h>

namespace hollowfernpike::wayland {

namespace {

using Manager = zwp_keyboard_shortcuts_inhibit_manager_v1;

/// The compositor's global, by a registry of its own: the toolkit does not tell of globals that it
/// does not use. On a queue of its own, because the toolkit's is not ours to wait on.
Manager* bindManager(wl_display* display) {
    static constexpr wl_registry_listener listener{
        .global =
            [](void* found, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t) {
                if (std::string_view{interface} ==
                    zwp_keyboard_shortcuts_inhibit_manager_v1_interface.name) {
                    *static_cast<void**>(found) = wl_registry_bind(
                        registry, name, &zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1);
                }
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    void* manager = nullptr;
    auto* const queue = wl_display_create_queue(display);
    auto* const wrapper = static_cast<wl_display*>(wl_proxy_create_wrapper(display));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper), queue);
    auto* const registry = wl_display_get_registry(wrapper);
    wl_proxy_wrapper_destroy(wrapper);
    wl_registry_add_listener(registry, &listener, static_cast<void*>(&manager));
    wl_display_roundtrip_queue(display, queue);
    wl_registry_destroy(registry);
    if (manager != nullptr) {
        wl_proxy_set_queue(static_cast<wl_proxy*>(manager), nullptr);
    }
    wl_event_queue_destroy(queue);
    return static_cast<Manager*>(manager);
}

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

ShortcutsInhibitor::ShortcutsInhibitor() : manager_(bindManager(toolkitDisplay())) {}

ShortcutsInhibitor::~ShortcutsInhibitor() {
    release();
    if (manager_ != nullptr) {
        zwp_keyboard_shortcuts_inhibit_manager_v1_destroy(manager_);
        wl_display_flush(toolkitDisplay());
    }
}

void ShortcutsInhibitor::setWindow(QWindow* window) {
    auto* const surface = window == nullptr ? nullptr : surfaceOf(*window);
    if (manager_ == nullptr || surface == surface_) {
        return;
    }
    release();
    if (surface != nullptr) {
        inhibitor_ = zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(manager_, surface,
                                                                                 toolkitSeat());
        zwp_keyboard_shortcuts_inhibitor_v1_add_listener(inhibitor_, &logListener, nullptr);
        surface_ = surface;
    }
    wl_display_flush(toolkitDisplay());
}

void ShortcutsInhibitor::release() {
    if (inhibitor_ != nullptr) {
        qCDebug(freedesktop::keysLog, "our window gives the compositor's combinations back");
        zwp_keyboard_shortcuts_inhibitor_v1_destroy(std::exchange(inhibitor_, nullptr));
        surface_ = nullptr;
    }
}

} // namespace hollowfernpike::wayland
