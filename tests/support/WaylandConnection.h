#pragma once

#include "platform/posix/Descriptor.h"

#include <cstdint>
#include <map>
#include <string>

#include <wayland-client-core.h>
#include <wayland-client-protocol.h>

namespace hollowfernpike::test {

/// Listens to an event that nobody is interested in.
inline constexpr auto ignoreEvent = [](auto... /*event*/) {};

/// A client's connection to a Wayland compositor.
class WaylandConnection {
public:
    /// `display` is the path of the compositor's socket, or its name in the runtime directory; if
    /// it is empty, the environment names it.
    /// Throws std::runtime_error if nobody answers there.
    explicit WaylandConnection(const std::string& display);

    /// Goes on with a socket that is connected already; the caller may close his.
    explicit WaylandConnection(const posix::Descriptor& socket);
    WaylandConnection(const WaylandConnection&) = delete;
    WaylandConnection& operator=(const WaylandConnection&) = delete;
    ~WaylandConnection();

    wl_display* get() const { return display_; }

    /// Whether the compositor has a global object of this kind.
    bool offers(const std::string& interfaceName) const { return globals_.contains(interfaceName); }

    /// The global object of that kind, which the caller owns. Throws std::runtime_error if the
    /// compositor has none.
    template <class Object>
    Object* bind(const wl_interface& interface, std::uint32_t version) {
        return static_cast<Object*>(bindObject(interface, version));
    }

    /// Returns when the compositor has done all that was asked of it, or is gone.
    void sync() const { wl_display_roundtrip(display_); }

private:
    struct Global {
        std::uint32_t name = 0;
        std::uint32_t version = 0;
    };

    /// `name` is what an error calls the display.
    void listen(const std::string& display);
    void* bindObject(const wl_interface& interface, std::uint32_t version);

    wl_display* display_ = nullptr;
    wl_registry* registry_ = nullptr;
    std::map<std::string, Global> globals_;
};

} // namespace hollowfernpike::test
