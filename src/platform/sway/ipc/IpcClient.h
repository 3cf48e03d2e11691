#pragma once

#include "platform/sway/ipc/IpcSocket.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace hollowfernpike::sway {

/// Questions and commands to sway. Connects when it is needed, again after the connection was lost.
/// Main thread only.
class IpcClient {
public:
    /// The path of sway's socket.
    explicit IpcClient(std::string path) : path_(std::move(path)) {}

    const std::string& path() const { return path_; }

    /// The answer, a JSON text. Waits for it no longer than IpcSocket::patience; absent if sway
    /// cannot be asked. After sway has let it wait in vain, this does not wait again for some
    /// seconds.
    std::optional<std::string> ask(IpcKind kind, std::string_view payload = {});

    /// Has sway execute the commands, separated by semicolons. Does not wait until it has; false if
    /// sway cannot be reached.
    bool post(std::string_view commands);

private:
    using Clock = std::chrono::steady_clock;

    bool connect();
    std::optional<IpcMessage> exchange(IpcKind kind, std::string_view payload);

    std::string path_;
    std::optional<IpcSocket> socket_;
    Clock::time_point silentUntil_{};
    std::size_t unread_ = 0; ///< answers to posts, in front of the next one
};

} // namespace hollowfernpike::sway
