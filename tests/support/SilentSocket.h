#pragma once

#include "platform/posix/Descriptor.h"
#include "support/SocketAddress.h"

#include <filesystem>
#include <stdexcept>

#include <sys/socket.h>

namespace hollowfernpike::test {

/// A service that accepts whoever comes and never says a word.
class SilentSocket {
public:
    explicit SilentSocket(const std::filesystem::path& path)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const auto address = socketAddress(path);
        if (::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
                0 ||
            ::listen(socket_.get(), SOMAXCONN) != 0) {
            throw std::runtime_error("no socket at " + path.string());
        }
    }

private:
    posix::Descriptor socket_;
};

} // namespace hollowfernpike::test
