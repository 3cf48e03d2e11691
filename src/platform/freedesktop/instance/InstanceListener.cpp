#include "platform/freedesktop/instance/InstanceListener.h"

#include "platform/posix/SystemCall.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <sys/un.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::size_t mostClients = 16;
constexpr int longestQueue = 128;

// Through the open directory: an address holds 108 bytes, and the directory's path may be longer.
sockaddr_un addressOf(const PrivateDirectory& directory, const std::string& name) {
    const auto path = "/proc/self/fd/" + std::to_string(directory.descriptor()) + '/' + name;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        throw std::system_error{ENAMETOOLONG, std::generic_category()};
    }
    std::memcpy(&address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

posix::Descriptor newSocket() {
    return posix::Descriptor{
        posix::checked(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))};
}

bool isOf(uid_t user, int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == user;
}

/// What the client has sent; empty if it has gone or sent more than a request; absent if nothing
/// has come yet.
std::optional<std::string> received(int socket) {
    std::array<char, longestRequest> buffer{};
    const auto size = posix::uninterrupted(
        [&] { return ::recv(socket, buffer.data(), buffer.size(), MSG_TRUNC); });
    if (size < 0) {
        return errno == EAGAIN ? std::nullopt : std::optional<std::string>{""};
    }
    const auto count = static_cast<std::size_t>(size);
    return count > buffer.size() ? std::string{} : std::string{buffer.data(), count};
}

/// False if the client has given up; its request must not be carried out then.
bool answer(int socket, std::string_view text) {
    return ::send(socket, text.data(), text.size(), MSG_NOSIGNAL) >= 0;
}

} // namespace

posix::Descriptor listeningSocket(const PrivateDirectory& directory, const std::string& name) {
    const auto early = name + ".new";
    const auto address = addressOf(directory, early);
    auto socket = newSocket();
    ::unlinkat(directory.descriptor(), early.c_str(), 0);
    posix::checked(
        ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address));
    // The sticky bit protects it from programs that clean up runtime directories.
    posix::checked(
        ::fchmodat(directory.descriptor(), early.c_str(), S_ISVTX | S_IRUSR | S_IWUSR, 0));
    posix::checked(::listen(socket.get(), longestQueue));
    if (::renameat(directory.descriptor(), early.c_str(), directory.descriptor(), name.c_str()) !=
        0) {
        const int failure = errno;
        ::unlinkat(directory.descriptor(), early.c_str(), 0);
        throw std::system_error{failure, std::generic_category()};
    }
    return socket;
}

posix::Descriptor connectedSocket(const PrivateDirectory& directory, const std::string& name) {
    const auto address = addressOf(directory, name);
    auto socket = newSocket();
    posix::checked(
        ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address));
    return socket;
}

InstanceListener::InstanceListener(const posix::Descriptor& socket, platform::RunLoop& runLoop,
                                   InstanceRequestHandler onRequest, InstanceRequestJudge mayBeDone,
                                   uid_t user)
    : socket_(socket), runLoop_(runLoop), onRequest_(std::move(onRequest)),
      mayBeDone_(std::move(mayBeDone)), user_(user),
      alarm_(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    listen();
}

void InstanceListener::listen() {
    watch_ = runLoop_.watchReadable(socket_.get(), [this] { accept(); });
}

// The socket stays readable as long as somebody waits there.
void InstanceListener::rest() {
    constexpr itimerspec inASecond{.it_interval = {0, 0}, .it_value = {1, 0}};
    ::timerfd_settime(alarm_.get(), 0, &inASecond, nullptr);
    watch_ = runLoop_.watchReadable(alarm_.get(), [this] { listen(); });
}

void InstanceListener::accept() {
    posix::Descriptor socket{
        ::accept4(socket_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)};
    if (!socket && (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)) {
        rest();
    }
    if (!socket || !isOf(user_, socket.get())) {
        return;
    }
    if (clients_.size() >= mostClients) {
        clients_.erase(clients_.begin());
    }
    const int key = ++lastClient_;
    auto watch = runLoop_.watchReadable(socket.get(), [this, key] { serve(key); });
    clients_.emplace(key, Client{std::move(socket), std::move(watch)});
}

void InstanceListener::serve(int client) {
    const auto text = received(clients_.at(client).socket.get());
    if (!text) {
        return;
    }
    const auto served = clients_.extract(client);
    const auto request = decoded(*text);
    if (request && mayBeDone_ && !mayBeDone_(*request)) {
        answer(served.mapped().socket.get(), refusal);
    } else if (request && answer(served.mapped().socket.get(), acknowledgement)) {
        const auto onRequest = onRequest_;
        onRequest(*request);
    }
}

} // namespace hollowfernpike::freedesktop
