#include "platform/freedesktop/instance/InstanceSocket.h"

#include "platform/freedesktop/files/SystemCall.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

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

Descriptor newSocket() {
    return Descriptor{checked(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))};
}

} // namespace

Descriptor listeningSocket(const PrivateDirectory& directory, const std::string& name) {
    const auto early = name + ".new";
    const auto address = addressOf(directory, early);
    auto socket = newSocket();
    ::unlinkat(directory.descriptor(), early.c_str(), 0);
    checked(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address));
    // The sticky bit protects it from programs that clean up runtime directories.
    checked(::fchmodat(directory.descriptor(), early.c_str(), S_ISVTX | S_IRUSR | S_IWUSR, 0));
    checked(::listen(socket.get(), longestQueue));
    if (::renameat(directory.descriptor(), early.c_str(), directory.descriptor(), name.c_str()) !=
        0) {
        const int failure = errno;
        ::unlinkat(directory.descriptor(), early.c_str(), 0);
        throw std::system_error{failure, std::generic_category()};
    }
    return socket;
}

Descriptor connectedSocket(const PrivateDirectory& directory, const std::string& name) {
    const auto address = addressOf(directory, name);
    auto socket = newSocket();
    checked(::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address));
    return socket;
}

} // namespace hollowfernpike::freedesktop
