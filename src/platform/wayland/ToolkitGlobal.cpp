#include "platform/wayland/ToolkitGlobal.h"

#include "platform/wayland/ToolkitWindow.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <wayland-client.h>

namespace hollowfernpike::wayland {

// The toolkit does not tell of globals that it does not use, so this asks with a registry of its
// own.
ToolkitGlobal::ToolkitGlobal(const wl_interface& interface, std::uint32_t version,
                             std::function<void()> onBound)
    : interface_(interface), version_(version), onBound_(std::move(onBound)),
      registry_(wl_display_get_registry(toolkitDisplay())) {
    static constexpr wl_registry_listener listener{
        .global =
            [](void* self, wl_registry*, std::uint32_t name, const char* offered,
               std::uint32_t latest) {
                static_cast<ToolkitGlobal*>(self)->bind(offered, name, latest);
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    wl_registry_add_listener(registry_, &listener, this);
    wl_display_flush(toolkitDisplay());
}

ToolkitGlobal::~ToolkitGlobal() {
    wl_registry_destroy(registry_);
    wl_display_flush(toolkitDisplay());
}

void ToolkitGlobal::bind(const char* interface, std::uint32_t name, std::uint32_t version) {
    if (proxy_ == nullptr && std::string_view{interface} == interface_.name) {
        proxy_ = wl_registry_bind(registry_, name, &interface_, std::min(version, version_));
        onBound_();
    }
}

} // namespace hollowfernpike::wayland
