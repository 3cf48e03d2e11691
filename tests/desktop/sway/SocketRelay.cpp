#include "desktop/sway/SocketRelay.h"

#include "support/SocketAddress.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

constexpr int roundMilliseconds = 2;

int newSocket() {
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

} // namespace

SocketRelay::SocketRelay(std::string path, std::string server)
    : path_(std::move(path)), server_(std::move(server)) {
    listen();
    thread_ = std::thread([this] { run(); });
}

SocketRelay::~SocketRelay() {
    isStopping_ = true;
    thread_.join();
    vanish();
}

void SocketRelay::breakConnections() {
    const std::scoped_lock lock(mutex_);
    closeAll();
}

void SocketRelay::vanish() {
    const std::scoped_lock lock(mutex_);
    closeAll();
    if (listening_ >= 0) {
        ::close(std::exchange(listening_, -1));
        std::filesystem::remove(path_);
    }
}

void SocketRelay::comeBack() {
    const std::scoped_lock lock(mutex_);
    listen();
}

void SocketRelay::listen() {
    const auto address = socketAddress(path_);
    listening_ = newSocket();
    if (::bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listening_, 8) != 0) {
        throw std::runtime_error("cannot listen at " + path_);
    }
}

void SocketRelay::run() {
    while (!isStopping_) {
        std::this_thread::sleep_for(std::chrono::milliseconds{roundMilliseconds});
        const std::scoped_lock lock(mutex_);
        accept();
        std::erase_if(pairs_, [this](const Pair& pair) {
            if (isSilent_ || (pass(pair.client, pair.server) && pass(pair.server, pair.client))) {
                return false;
            }
            ::close(pair.client);
            ::close(pair.server);
            return true;
        });
    }
}

void SocketRelay::accept() {
    pollfd source{listening_, POLLIN, 0};
    if (listening_ < 0 || ::poll(&source, 1, 0) <= 0) {
        return;
    }
    const Pair pair{.client = ::accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC),
                    .server = newSocket()};
    const auto address = socketAddress(server_);
    if (::connect(pair.server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        pairs_.push_back(pair);
    } else {
        ::close(pair.client);
        ::close(pair.server);
    }
}

/// False if the connection has ended.
bool SocketRelay::pass(int from, int to) const {
    std::array<char, 65536> bytes{};
    pollfd source{from, POLLIN, 0};
    if (::poll(&source, 1, 0) <= 0) {
        return true;
    }
    const auto count = ::recv(from, bytes.data(), bytes.size(), 0);
    return count > 0 &&
           ::send(to, bytes.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL) == count;
}

void SocketRelay::closeAll() {
    for (const auto& pair : std::exchange(pairs_, {})) {
        ::close(pair.client);
        ::close(pair.server);
    }
}

} // namespace hollowfernpike::test
