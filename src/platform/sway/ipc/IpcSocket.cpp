#include "platform/sway/ipc/IpcSocket.h"

#include "platform/freedesktop/Logging.h"
#include "platform/posix/SystemCall.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace hollowfernpike::sway {

namespace {

using posix::uninterrupted;

constexpr std::string_view magic = "i3-ipc";

/// Length and kind follow the magic text, both in the byte order of the machine.
constexpr std::size_t headerSize = magic.size() + 2 * sizeof(std::uint32_t);

/// Far more than the tree of a thousand windows takes.
constexpr std::uint32_t longestPayload = 64U << 20U;

std::uint32_t numberAt(std::string_view bytes, std::size_t position) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.substr(position, sizeof number).data(), sizeof number);
    return number;
}

std::string encoded(IpcKind kind, std::string_view payload) {
    std::string bytes{magic};
    for (const auto number :
         {static_cast<std::uint32_t>(payload.size()), static_cast<std::uint32_t>(kind)}) {
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    return bytes.append(payload);
}

} // namespace

IpcSocket::IpcSocket(const std::string& path)
    : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        isOpen_ = false;
        return;
    }
    path.copy(address.sun_path, path.size());
    const auto* const place = reinterpret_cast<const sockaddr*>(&address);
    if (uninterrupted([&] { return ::connect(descriptor(), place, sizeof address); }) != 0) {
        qCDebug(freedesktop::keysLog, "sway's socket %s: %s", path.c_str(), std::strerror(errno));
        isOpen_ = false;
    }
}

bool IpcSocket::send(IpcKind kind, std::string_view payload) {
    const auto bytes = encoded(kind, payload);
    const auto deadline = Clock::now() + patience;
    std::string_view rest = bytes;
    while (!rest.empty() && wait(POLLOUT, deadline)) {
        const auto sent = uninterrupted(
            [&] { return ::send(descriptor(), rest.data(), rest.size(), MSG_NOSIGNAL); });
        if (sent < 0 && errno != EAGAIN) {
            isOpen_ = false;
        } else if (sent > 0) {
            rest.remove_prefix(static_cast<std::size_t>(sent));
        }
    }
    return isOpen();
}

std::optional<IpcMessage> IpcSocket::receive() {
    const auto deadline = Clock::now() + patience;
    auto message = takeArrived();
    while (!message && wait(POLLIN, deadline)) {
        message = takeArrived();
    }
    return message;
}

std::optional<IpcMessage> IpcSocket::takeArrived() {
    while (readMissing()) {
        if (missing() == 0U) {
            IpcMessage message{
                static_cast<IpcKind>(numberAt(buffer_, magic.size() + sizeof(std::uint32_t))),
                buffer_.substr(headerSize)};
            buffer_.clear();
            return message;
        }
    }
    return std::nullopt;
}

bool IpcSocket::wait(short events, Clock::time_point deadline) {
    if (!isOpen()) {
        return false;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd source{descriptor(), events, 0};
    const auto most = static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
    if (uninterrupted([&] { return ::poll(&source, 1, most); }) > 0) {
        return true;
    }
    qCWarning(freedesktop::keysLog, "sway does not answer");
    isOpen_ = false;
    return false;
}

/// How many bytes the message lacks, or its header; absent if it is no message.
std::optional<std::size_t> IpcSocket::missing() {
    if (buffer_.size() < headerSize) {
        return headerSize - buffer_.size();
    }
    const auto length = numberAt(buffer_, magic.size());
    if (!buffer_.starts_with(magic) || length > longestPayload) {
        return std::nullopt;
    }
    return headerSize + length - buffer_.size();
}

/// Reads as much of what the message lacks as has arrived; false if that is not all of it.
bool IpcSocket::readMissing() {
    const auto count = missing();
    if (isOpen_ && !count) {
        qCWarning(freedesktop::keysLog, "what sway's socket says is no message");
        isOpen_ = false;
    }
    if (!isOpen_) {
        return false;
    }
    const auto begin = buffer_.size();
    buffer_.resize(begin + *count);
    const auto read = *count == 0 ? 0 : uninterrupted([&] {
        return ::recv(descriptor(), buffer_.data() + begin, *count, 0);
    });
    buffer_.resize(begin + static_cast<std::size_t>(std::max<ssize_t>(read, 0)));
    if (*count > 0 && (read == 0 || (read < 0 && errno != EAGAIN))) {
        isOpen_ = false;
    }
    return read >= 0 && static_cast<std::size_t>(read) == *count;
}

} // namespace hollowfernpike::sway
