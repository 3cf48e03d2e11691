#include "platform/sway/FakeSway.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>

namespace hollowfernpike::test {

FakeSway::FakeSway() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path().copy(address.sun_path, sizeof address.sun_path - 1);
    if (::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket_.get(), 8) != 0) {
        throw std::runtime_error("cannot listen at " + path());
    }
}

void FakeSway::accept() {
    formerClient_ = std::exchange(
        client_, posix::Descriptor{::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC)});
}

void FakeSway::vanish() {
    socket_ = posix::Descriptor{};
    std::filesystem::remove(path());
}

std::string FakeSway::receive() {
    std::array<char, 14> header{};
    if (::recv(client_.get(), header.data(), header.size(), MSG_WAITALL) !=
        static_cast<ssize_t>(header.size())) {
        throw std::runtime_error("no message");
    }
    std::uint32_t length = 0;
    std::memcpy(&length, header.data() + 6, sizeof length);
    std::string payload(length, '\0');
    if (length > 0 && ::recv(client_.get(), payload.data(), length, MSG_WAITALL) !=
                          static_cast<ssize_t>(length)) {
        throw std::runtime_error("half a message");
    }
    return payload;
}

void FakeSway::send(std::uint32_t kind, std::string_view payload) {
    sendBytes(ipcMessage(kind, payload));
}

void FakeSway::sendBytes(std::string_view bytes) {
    if (::send(client_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("cannot send");
    }
}

std::string ipcMessage(std::uint32_t kind, std::string_view payload) {
    std::string bytes = "i3-ipc";
    for (const auto number : {static_cast<std::uint32_t>(payload.size()), kind}) {
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    return bytes.append(payload);
}

} // namespace hollowfernpike::test
