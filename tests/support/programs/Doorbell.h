#pragma once

#include "support/SocketAddress.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>

#include <sys/socket.h>
#include <unistd.h>

namespace hollowfernpike::test {

/// With it further copies of a program tell the first one that the user has asked for it.
class Doorbell {
public:
    Doorbell() = default;
    Doorbell(const Doorbell&) = delete;
    Doorbell& operator=(const Doorbell&) = delete;
    ~Doorbell() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }

    /// Hangs it up for this copy. If one hangs there already, rings that with the start-up
    /// identifier of this copy and returns false.
    bool hang(const std::string& path) {
        const auto address = socketAddress(path);
        descriptor_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        const auto* place = reinterpret_cast<const sockaddr*>(&address);
        if (::bind(descriptor_, place, sizeof address) == 0) {
            return true;
        }
        const char* const identifier = std::getenv("DESKTOP_STARTUP_ID");
        const std::string text = identifier == nullptr ? "" : identifier;
        ::sendto(descriptor_, text.data(), text.size(), 0, place, sizeof address);
        return false;
    }

    /// To be waited on until somebody rings; -1 if it hangs nowhere.
    int descriptor() const { return descriptor_; }

    /// The start-up identifier of the copy that has rung.
    std::string answer() const {
        std::array<char, 512> text{};
        const auto count = ::recv(descriptor_, text.data(), text.size(), 0);
        return {text.data(), count < 0 ? 0 : static_cast<std::size_t>(count)};
    }

private:
    int descriptor_ = -1;
};

} // namespace hollowfernpike::test
