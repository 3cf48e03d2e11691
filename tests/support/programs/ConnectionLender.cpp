// Connects to the compositor that the environment names and hands the connection to whoever
// listens on the socket that the command line names. Stays for as long as that one does: a
// compositor may judge its client by this program, and look it up at any time.

#include "support/SocketAddress.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <span>
#include <stdexcept>
#include <string>

#include <sys/socket.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

int connectTo(const std::string& path) {
    const auto address = socketAddress(path);
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        throw std::runtime_error("cannot connect to " + path);
    }
    return connection;
}

void handOver(int connection, int borrower) {
    char content = 0;
    iovec part{.iov_base = &content, .iov_len = sizeof content};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof connection)> room{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = room.data();
    message.msg_controllen = room.size();
    auto* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof connection);
    std::memcpy(CMSG_DATA(header), &connection, sizeof connection);
    if (::sendmsg(borrower, &message, 0) < 0) {
        throw std::runtime_error("nobody takes the connection");
    }
}

void lendTo(const std::string& path) {
    const int connection =
        connectTo(variable("XDG_RUNTIME_DIR") + '/' + variable("WAYLAND_DISPLAY"));
    const int borrower = connectTo(path);
    handOver(connection, borrower);
    ::close(connection);
    char nothing = 0;
    while (::read(borrower, &nothing, sizeof nothing) > 0) {
    }
}

} // namespace

} // namespace hollowfernpike::test

int main(int count, char** arguments) {
    try {
        hollowfernpike::test::lendTo(std::span{arguments, static_cast<std::size_t>(count)}.back());
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
