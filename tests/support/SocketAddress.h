#pragma once

#include <stdexcept>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>

namespace hollowfernpike::test {

/// The address of a socket in the file system. Throws std::runtime_error if the path is too long.
inline sockaddr_un socketAddress(const std::string& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (path.size() >= sizeof address.sun_path) {
        throw std::runtime_error("too long: " + path);
    }
    path.copy(address.sun_path, path.size());
    return address;
}

} // namespace hollowfernpike::test
