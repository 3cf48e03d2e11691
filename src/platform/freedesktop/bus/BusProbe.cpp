#include "platform/freedesktop/bus/BusProbe.h"

#include "platform/posix/Descriptor.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace hollowfernpike::freedesktop {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view local = "unix:";

/// The value of a key of an address, such as "path". Escaped bytes ("%20") are decoded.
std::string valueOf(std::string_view address, std::string_view key) {
    std::string value;
    address.remove_prefix(local.size());
    while (!address.empty()) {
        const auto pair = address.substr(0, address.find(','));
        address.remove_prefix(std::min(address.size(), pair.size() + 1));
        if (pair.starts_with(key) && pair.substr(key.size()).starts_with('=')) {
            value = pair.substr(key.size() + 1);
        }
    }
    for (auto place = value.find('%'); place != std::string::npos && place + 2 < value.size();
         place = value.find('%', place + 1)) {
        value.replace(
            place, 3, 1,
            static_cast<char>(std::strtol(value.substr(place + 1, 2).c_str(), nullptr, 16)));
    }
    return value;
}

/// Not connected if nobody listens there, or the address is of a form that we do not know.
posix::Descriptor connected(std::string_view address) {
    auto name = valueOf(address, "path");
    if (const auto abstract = valueOf(address, "abstract"); name.empty() && !abstract.empty()) {
        name = std::string(1, '\0') + abstract;
    }
    sockaddr_un target{};
    target.sun_family = AF_UNIX;
    posix::Descriptor socket{::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)};
    if (socket.get() < 0 || name.empty() || name.size() >= sizeof target.sun_path) {
        return {};
    }
    std::memcpy(&target.sun_path, name.data(), name.size());
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() +
                                               (name.front() == '\0' ? 0 : 1));
    if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&target), length) != 0) {
        return {};
    }
    return socket;
}

/// The first bytes of the answer; empty if none comes in time.
std::string answer(const posix::Descriptor& socket, std::string_view text,
                   Clock::time_point deadline) {
    if (::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL) < 0) {
        return {};
    }
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd readable{socket.get(), POLLIN, 0};
    std::array<char, 256> bytes{};
    if (::poll(&readable, 1, std::max(0, static_cast<int>(rest.count()))) <= 0) {
        return {};
    }
    const auto count = ::recv(socket.get(), bytes.data(), bytes.size(), 0);
    return count > 0 ? std::string(bytes.data(), static_cast<std::size_t>(count)) : std::string{};
}

std::string userInHexadecimal() {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char digit : std::to_string(::geteuid())) {
        const auto code = static_cast<unsigned char>(digit);
        text += digits[code / 16];
        text += digits[code % 16];
    }
    return text;
}

/// The message Hello, by which each client introduces itself (D-Bus Specification).
std::string hello() {
    const auto field = [](char code, char type, std::string_view value) {
        std::string text{code, 1, type, 0, static_cast<char>(value.size()), 0, 0, 0};
        text += value;
        text += '\0';
        text.resize((text.size() + 7) / 8 * 8);
        return text;
    };
    std::string fields = field(1, 'o', "/org/freedesktop/DBus");
    fields += field(2, 's', "org.freedesktop.DBus");
    fields += field(3, 's', "Hello");
    const std::string destination = field(6, 's', "org.freedesktop.DBus");
    constexpr std::size_t padding = 3; // at the end of the last field, outside of the list's length
    const auto length = static_cast<char>(fields.size() + destination.size() - padding);
    return std::string{'l', 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, length, 0, 0, 0} + fields +
           destination;
}

} // namespace

bool isLocalBus(std::string_view addresses) {
    while (addresses.starts_with(local)) {
        const auto end = addresses.find(';');
        if (end == std::string_view::npos) {
            return true;
        }
        addresses.remove_prefix(end + 1);
    }
    return false;
}

// A bus that refuses us answers, too: the toolkit may know another way.
bool busAnswers(std::string_view addresses, std::chrono::milliseconds longest) {
    const auto deadline = Clock::now() + longest;
    const auto socket = connected(addresses.substr(0, addresses.find(';')));
    if (!socket) {
        return true;
    }
    const auto greeting = answer(
        socket, std::string(1, '\0') + "AUTH EXTERNAL " + userInHexadecimal() + "\r\n", deadline);
    return !greeting.empty() && (!greeting.starts_with("OK") ||
                                 !answer(socket, "BEGIN\r\n" + hello(), deadline).empty());
}

} // namespace hollowfernpike::freedesktop
