#pragma once

#include "platform/posix/Descriptor.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace hollowfernpike::sway {

/// What a message is, by sway-ipc(7). An answer has the kind of its question.
enum class IpcKind : std::uint32_t {
    runCommand = 0,
    subscribe = 2,
    getTree = 4,
    getVersion = 7,
    getConfig = 9,
    getBindingState = 12,
    workspaceEvent = 0x80000000,
    bindingEvent = 0x80000005,
};

struct IpcMessage {
    IpcKind kind{};
    std::string payload; ///< JSON, except in commands
};

/// A connection to sway's socket. Nothing here waits for longer than `patience`: after that, or
/// when what arrives is no message, the connection is of no use any more. What has not been taken
/// stays with the system, so that the descriptor goes on being readable.
class IpcSocket {
public:
    static constexpr std::chrono::milliseconds patience{500};

    /// Closed from the start if nobody listens at `path`.
    explicit IpcSocket(const std::string& path);

    bool isOpen() const { return isOpen_; }
    int descriptor() const { return socket_.get(); }

    /// False if the connection is closed.
    bool send(IpcKind kind, std::string_view payload);

    /// The next message; waits for it. Absent if the connection is closed.
    std::optional<IpcMessage> receive();

    /// The next message that has arrived whole, without waiting. Absent if there is none; the
    /// connection may be closed then.
    std::optional<IpcMessage> takeArrived();

private:
    using Clock = std::chrono::steady_clock;

    bool wait(short events, Clock::time_point deadline);
    std::optional<std::size_t> missing();
    bool readMissing();

    posix::Descriptor socket_;
    bool isOpen_ = true;
    std::string buffer_; ///< the beginning of a message
};

} // namespace hollowfernpike::sway
