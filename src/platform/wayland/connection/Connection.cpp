#include "platform/wayland/connection/Connection.h"

#include "platform/freedesktop/files/BaseDirectories.h"
#include "platform/posix/SystemCall.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <wayland-client-protocol.h>

namespace hollowfernpike::wayland {

namespace {

using Clock = std::chrono::steady_clock;

/// KWin 5 reads a client's whole program before it answers for the first time, twice, and the
/// entries of all applications if one of them is new; on a busy machine that takes a while.
constexpr std::chrono::milliseconds patienceAtFirst{10000};

} // namespace

std::unique_ptr<Connection> Connection::open() {
    const char* const name = std::getenv("WAYLAND_DISPLAY");
    wl_display* const display =
        name == nullptr || *name == '\0' ? nullptr : wl_display_connect(name);
    if (display == nullptr) {
        return nullptr;
    }
    auto connection = std::unique_ptr<Connection>(new Connection(display));
    return connection->readGlobals() ? std::move(connection) : nullptr;
}

bool Connection::hasSocket() {
    const char* const name = std::getenv("WAYLAND_DISPLAY");
    const auto directory = freedesktop::runtimeDirectory();
    std::error_code failure;
    return name != nullptr && directory && std::filesystem::exists(*directory / name, failure);
}

Connection::Connection(wl_display* display) : display_(display) {}

Connection::~Connection() {
    watch_.reset();
    if (registry_ != nullptr) {
        wl_registry_destroy(registry_);
    }
    wl_display_disconnect(display_);
}

std::int32_t Connection::compositorProcess() const {
    ucred credentials{};
    socklen_t size = sizeof credentials;
    const int socket = wl_display_get_fd(display_);
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0 ? credentials.pid
                                                                                   : 0;
}

std::string Connection::compositorName() const {
    std::ifstream file("/proc/" + std::to_string(compositorProcess()) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

bool Connection::readGlobals() {
    static constexpr wl_registry_listener listener{
        .global =
            [](void* self, wl_registry*, std::uint32_t name, const char* interface,
               std::uint32_t version) {
                static_cast<Connection*>(self)->globals_.try_emplace(interface,
                                                                     Global{name, version});
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {},
    };
    registry_ = wl_display_get_registry(display_);
    wl_registry_add_listener(registry_, &listener, this);
    return roundTrip(patienceAtFirst);
}

std::uint32_t Connection::offeredVersion(const wl_interface& interface) const {
    const auto found = globals_.find(std::string_view{interface.name});
    return found == globals_.end() ? 0 : found->second.version;
}

void* Connection::bindGlobal(const wl_interface& interface, std::uint32_t version) {
    const auto found = globals_.find(std::string_view{interface.name});
    return found == globals_.end() ? nullptr
                                   : wl_registry_bind(registry_, found->second.name, &interface,
                                                      std::min(version, found->second.version));
}

bool Connection::dispatchUntil(const std::function<bool()>& isDone,
                               std::chrono::milliseconds longest) {
    const auto deadline = Clock::now() + longest;
    wl_display_flush(display_);
    while (!isDone()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0 || !dispatchArrived(left)) {
            return false;
        }
    }
    return true;
}

bool Connection::roundTrip(std::chrono::milliseconds longest) {
    static constexpr wl_callback_listener listener{
        .done = [](void* done, wl_callback*, std::uint32_t) { *static_cast<bool*>(done) = true; },
    };
    bool isDone = false;
    auto* const callback = wl_display_sync(display_);
    wl_callback_add_listener(callback, &listener, &isDone);
    const bool isThere = dispatchUntil([&isDone] { return isDone; }, longest);
    wl_callback_destroy(callback);
    return isThere;
}

void Connection::attach(platform::RunLoop& runLoop, std::function<void()> onLost) {
    onLost_ = std::move(onLost);
    watch_ = runLoop.watchReadable(wl_display_get_fd(display_), [this] { onReadable(); });
    wl_display_flush(display_);
}

bool Connection::dispatchArrived(std::chrono::milliseconds longest) {
    while (wl_display_prepare_read(display_) != 0) {
        if (wl_display_dispatch_pending(display_) < 0) {
            return false;
        }
    }
    pollfd source{wl_display_get_fd(display_), POLLIN, 0};
    const auto most = static_cast<int>(longest.count());
    if (posix::uninterrupted([&] { return ::poll(&source, 1, most); }) > 0) {
        wl_display_read_events(display_);
    } else {
        wl_display_cancel_read(display_);
    }
    return wl_display_dispatch_pending(display_) >= 0 && wl_display_get_error(display_) == 0;
}

void Connection::onReadable() {
    const bool isThere = dispatchArrived({});
    wl_display_flush(display_);
    if (!isThere) {
        watch_.reset();
        std::exchange(onLost_, {})();
    }
}

} // namespace hollowfernpike::wayland
