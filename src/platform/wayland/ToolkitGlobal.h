#pragma once

#include <cstdint>
#include <functional>

struct wl_interface;
struct wl_registry;

namespace hollowfernpike::wayland {

/// A global object of the compositor on the toolkit's connection, for what has to do with our own
/// surfaces. Never waits for the compositor. Main thread only; the toolkit's plug-in must be
/// "wayland".
class ToolkitGlobal {
public:
    /// Asks for the global of that interface, of `version` at most. `onBound` is called once when
    /// it is there, with the toolkit's events; never if the compositor has none.
    ToolkitGlobal(const wl_interface& interface, std::uint32_t version,
                  std::function<void()> onBound);
    ToolkitGlobal(const ToolkitGlobal&) = delete;
    ToolkitGlobal& operator=(const ToolkitGlobal&) = delete;
    ~ToolkitGlobal();

    /// Null until it is there. The owner of this object destroys the proxy before this object.
    template <class Proxy>
    Proxy* get() const {
        return static_cast<Proxy*>(proxy_);
    }

private:
    void bind(const char* interface, std::uint32_t name, std::uint32_t version);

    const wl_interface& interface_;
    std::uint32_t version_;
    std::function<void()> onBound_;
    wl_registry* registry_;
    void* proxy_ = nullptr;
};

} // namespace hollowfernpike::wayland
