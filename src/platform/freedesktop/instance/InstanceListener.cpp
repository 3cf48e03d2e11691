#include "platform/freedesktop/instance/InstanceListener.h"

#include "platform/freedesktop/files/SystemCall.h"
#include "platform/freedesktop/instance/InstanceSocket.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

#include <sys/socket.h>

namespace hollowfernpike::freedesktop {

namespace {

constexpr std::size_t mostClients = 16;

bool isOf(uid_t user, int socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == user;
}

/// What the client has sent; empty if it has gone or sent more than a request; absent if nothing
/// has come yet.
std::optional<std::string> received(int socket) {
    std::array<char, longestRequest> buffer{};
    const auto size =
        uninterrupted([&] { return ::recv(socket, buffer.data(), buffer.size(), MSG_TRUNC); });
    if (size < 0) {
        return errno == EAGAIN ? std::nullopt : std::optional<std::string>{""};
    }
    const auto count = static_cast<std::size_t>(size);
    return count > buffer.size() ? std::string{} : std::string{buffer.data(), count};
}

/// False if the client has given up; its request must not be carried out then.
bool acknowledge(int socket) {
    return ::send(socket, acknowledgement.data(), acknowledgement.size(), MSG_NOSIGNAL) >= 0;
}

} // namespace

InstanceListener::InstanceListener(const Descriptor& socket, platform::RunLoop& runLoop,
                                   InstanceRequestHandler onRequest, uid_t user)
    : socket_(socket), runLoop_(runLoop), onRequest_(std::move(onRequest)), user_(user),
      watch_(runLoop_.watchReadable(socket_.get(), [this] { accept(); })) {}

void InstanceListener::accept() {
    Descriptor socket{::accept4(socket_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC)};
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
    if (request && acknowledge(served.mapped().socket.get())) {
        const auto onRequest = onRequest_;
        onRequest(*request);
    }
}

} // namespace hollowfernpike::freedesktop
