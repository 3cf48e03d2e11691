#pragma once

#include "platform/RunLoop.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <wayland-client-core.h>

struct wl_registry;

namespace hollowfernpike::wayland {

/// A connection of our own to the compositor, beside the toolkit's, and the globals that it offered
/// when the connection was made. Main thread only.
class Connection {
public:
    /// Connects to the compositor that WAYLAND_DISPLAY names. Null if there is none, or if it does
    /// not answer within ten seconds. Its later answers are waited for a second each.
    static std::unique_ptr<Connection> open();

    /// Whether the socket of that compositor exists. It stays when the compositor crashes.
    static bool hasSocket();

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    wl_display* get() const { return display_; }

    /// The process identifier of the compositor; 0 if it is not known.
    std::int32_t compositorProcess() const;

    /// What the kernel calls that process, such as "labwc"; empty if it is not known.
    std::string compositorName() const;

    /// The version of the global of that interface; 0 if the compositor does not offer it.
    std::uint32_t offeredVersion(const wl_interface& interface) const;

    /// A proxy for the global of that interface, of `version` at most; null if the compositor does
    /// not offer it. The caller destroys it before the connection.
    template <class Proxy>
    Proxy* bind(const wl_interface& interface, std::uint32_t version) {
        return static_cast<Proxy*>(bindGlobal(interface, version));
    }

    /// Handles events until `isDone`. False if that takes longer or the compositor is gone.
    bool dispatchUntil(const std::function<bool()>& isDone,
                       std::chrono::milliseconds longest = patience);

    /// Handles what has arrived, without waiting; false as above.
    bool dispatchArrived() { return dispatchArrived({}); }

    /// Handles events until the compositor has done all that was asked of it; false as above.
    bool roundTrip(std::chrono::milliseconds longest = patience);

    /// From now on events are handled as they come. `onLost` is called once when the compositor has
    /// gone; it may destroy this object.
    void attach(platform::RunLoop& runLoop, std::function<void()> onLost);

private:
    /// A compositor answers in a millisecond; one that needs longer than this hangs.
    static constexpr std::chrono::milliseconds patience{1000};

    struct Global {
        std::uint32_t name = 0;
        std::uint32_t version = 0;
    };

    explicit Connection(wl_display* display);
    bool readGlobals();
    void* bindGlobal(const wl_interface& interface, std::uint32_t version);
    bool dispatchArrived(std::chrono::milliseconds longest);
    void onReadable();

    wl_display* display_;
    wl_registry* registry_ = nullptr;
    std::map<std::string, Global, std::less<>> globals_;
    std::function<void()> onLost_;
    std::unique_ptr<platform::Subscription> watch_;
};

} // namespace hollowfernpike::wayland
