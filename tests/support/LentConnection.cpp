#include "support/LentConnection.h"

#include "support/SessionUser.h"
#include "support/SocketAddress.h"
#include "support/WaitUntil.h"

#include <array>
#include <cstring>
#include <stdexcept>

#include <poll.h>
#include <sys/socket.h>

namespace hollowfernpike::test {

namespace {

using posix::Descriptor;

Descriptor listenAt(const std::filesystem::path& place) {
    const auto address = socketAddress(place);
    Descriptor listening(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (::bind(listening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listening.get(), 1) != 0) {
        throw std::runtime_error("cannot listen at " + place.string());
    }
    giveToSessionUser(place);
    return listening;
}

Descriptor accept(const Descriptor& listening, ChildProcess& lender) {
    pollfd caller{listening.get(), POLLIN, 0};
    const auto isDecided = [&] { return ::poll(&caller, 1, 0) > 0 || lender.hasEnded(); };
    if (!waitUntil(isDecided) || caller.revents == 0) {
        throw std::runtime_error("no connection is lent: " + lender.errors());
    }
    return Descriptor(::accept4(listening.get(), nullptr, nullptr, SOCK_CLOEXEC));
}

/// What comes over this socket beside its single byte.
Descriptor receive(const Descriptor& tie) {
    char content = 0;
    iovec part{.iov_base = &content, .iov_len = sizeof content};
    int received = -1;
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof received)> room{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = room.data();
    message.msg_controllen = room.size();
    if (::recvmsg(tie.get(), &message, MSG_CMSG_CLOEXEC) <= 0 || message.msg_controllen == 0) {
        throw std::runtime_error("the lender has no connection");
    }
    std::memcpy(&received, CMSG_DATA(CMSG_FIRSTHDR(&message)), sizeof received);
    return Descriptor(received);
}

} // namespace

LentSocket::LentSocket(const Start& start, const std::filesystem::path& lender,
                       const std::filesystem::path& place) {
    const auto listening = listenAt(place);
    lender_ = start({lender, place});
    tie_ = accept(listening, *lender_);
    socket_ = receive(tie_);
    std::filesystem::remove(place);
}

} // namespace hollowfernpike::test
