#include "support/SwayIpc.h"

#include "support/WaitUntil.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include <nlohmann/json.hpp>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace hollowfernpike::test {

namespace {

using nlohmann::json;

constexpr std::string_view magic = "i3-ipc";

/// Kinds of messages; the last is that of an event.
constexpr std::uint32_t runCommand = 0;
constexpr std::uint32_t getWorkspaces = 1;
constexpr std::uint32_t subscribe = 2;
constexpr std::uint32_t getTree = 4;
constexpr std::uint32_t getVersion = 7;
constexpr std::uint32_t workspaceEvent = 0x80000000;

struct Message {
    std::uint32_t kind = 0;
    std::string payload;
};

class SwaySocket {
public:
    explicit SwaySocket(const std::string& path)
        : descriptor_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        if (path.size() >= sizeof address.sun_path) {
            ::close(descriptor_);
            throw std::runtime_error("too long: " + path);
        }
        path.copy(address.sun_path, path.size());
        constexpr timeval longest{
            .tv_sec = std::chrono::duration_cast<std::chrono::seconds>(patience).count(),
            .tv_usec = 0};
        ::setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest);
        const auto* place = reinterpret_cast<const sockaddr*>(&address);
        if (::connect(descriptor_, place, sizeof address) != 0) {
            ::close(descriptor_);
            throw std::runtime_error("no sway at " + path);
        }
    }
    SwaySocket(const SwaySocket&) = delete;
    SwaySocket& operator=(const SwaySocket&) = delete;
    ~SwaySocket() { ::close(descriptor_); }

    void send(const Message& message) const {
        const std::array header{static_cast<std::uint32_t>(message.payload.size()), message.kind};
        auto text = std::string{magic} + std::string(sizeof header, '\0') + message.payload;
        std::memcpy(text.data() + magic.size(), header.data(), sizeof header);
        if (::send(descriptor_, text.data(), text.size(), MSG_NOSIGNAL) !=
            static_cast<ssize_t>(text.size())) {
            throw std::runtime_error("sway does not listen");
        }
    }

    /// Waits until it answers or goes away.
    void waitForSign() const {
        pollfd sign{descriptor_, POLLIN, 0};
        ::poll(&sign, 1, static_cast<int>(patience.count()));
    }

    Message receive() const {
        std::array<std::uint32_t, 2> header{};
        const auto text = read(magic.size() + sizeof header);
        std::memcpy(header.data(), text.data() + magic.size(), sizeof header);
        return {.kind = header[1], .payload = read(header[0])};
    }

private:
    std::string read(std::size_t size) const {
        std::string text(size, '\0');
        if (size > 0 &&
            ::recv(descriptor_, text.data(), size, MSG_WAITALL) != static_cast<ssize_t>(size)) {
            throw std::runtime_error("sway does not answer");
        }
        return text;
    }

    int descriptor_;
};

} // namespace

void SwayIpc::command(const std::string& text) const {
    const auto results = ask(runCommand, text);
    for (const auto& result : results) {
        if (!result.at("success").get<bool>()) {
            throw std::runtime_error(text + ": " + results.dump());
        }
    }
}

json SwayIpc::tree() const {
    return ask(getTree);
}

json SwayIpc::workspaces() const {
    return ask(getWorkspaces);
}

json SwayIpc::version() const {
    return ask(getVersion);
}

// Sway answers the command before it obeys, and tells afterwards that it has done so.
void SwayIpc::reload() const {
    const SwaySocket events(socket_);
    events.send({.kind = subscribe, .payload = R"(["workspace"])"});
    events.receive();
    command("reload");
    for (bool isDone = false; !isDone;) {
        const auto event = events.receive();
        isDone =
            event.kind == workspaceEvent && json::parse(event.payload).at("change") == "reload";
    }
}

// Sway reads nothing from a connection that is closed already, and may end before it answers.
void SwayIpc::exit() const {
    const SwaySocket connection(socket_);
    connection.send({.kind = runCommand, .payload = "exit"});
    connection.waitForSign();
}

json SwayIpc::ask(std::uint32_t kind, const std::string& payload) const {
    const SwaySocket connection(socket_);
    connection.send({.kind = kind, .payload = payload});
    return json::parse(connection.receive().payload);
}

} // namespace hollowfernpike::test
