#include "support/WaylandConnection.h"

#include <algorithm>
#include <stdexcept>

#include <fcntl.h>

namespace hollowfernpike::test {

WaylandConnection::WaylandConnection(const std::string& display)
    : display_(wl_display_connect(display.empty() ? nullptr : display.c_str())) {
    listen(display);
}

WaylandConnection::WaylandConnection(const posix::Descriptor& socket)
    : display_(wl_display_connect_to_fd(::fcntl(socket.get(), F_DUPFD_CLOEXEC, 0))) {
    listen("of a connected socket");
}

void WaylandConnection::listen(const std::string& display) {
    if (display_ == nullptr) {
        throw std::runtime_error("no Wayland display " + display);
    }
    static constexpr wl_registry_listener listener{
        .global =
            [](void* self, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
               std::uint32_t version) {
                static_cast<WaylandConnection*>(self)->globals_[interface] = {name, version};
            },
        .global_remove = [](void* /*self*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};
    registry_ = wl_display_get_registry(display_);
    wl_registry_add_listener(registry_, &listener, this);
    if (wl_display_roundtrip(display_) < 0) {
        wl_registry_destroy(registry_);
        wl_display_disconnect(display_);
        throw std::runtime_error("no answer from Wayland display " + display);
    }
}

WaylandConnection::~WaylandConnection() {
    wl_registry_destroy(registry_);
    wl_display_disconnect(display_);
}

void* WaylandConnection::bindObject(const wl_interface& interface, std::uint32_t version) {
    const auto global = globals_.find(interface.name);
    if (global == globals_.end()) {
        throw std::runtime_error(std::string{"the compositor has no "} + interface.name);
    }
    return wl_registry_bind(registry_, global->second.name, &interface,
                            std::min(version, global->second.version));
}

} // namespace hollowfernpike::test
