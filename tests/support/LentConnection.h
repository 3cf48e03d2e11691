#pragma once

#include "platform/posix/Descriptor.h"
#include "support/ChildProcess.h"
#include "support/WaylandConnection.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace hollowfernpike::test {

/// A socket that is connected to a compositor and belongs to another program: the compositor sees
/// that one's process, user and rights, while the test uses the connection.
class LentSocket {
public:
    /// Starts a program of a session in it.
    using Start =
        std::function<std::unique_ptr<ChildProcess>(const std::vector<std::string>& commandLine)>;

    /// `lender` is the program HFP_CONNECTION_LENDER, or a copy of it; `place` is where it finds
    /// this process, a socket that nobody has made yet. Throws std::runtime_error if there is no
    /// connection to be had.
    LentSocket(const Start& start, const std::filesystem::path& lender,
               const std::filesystem::path& place);

    const posix::Descriptor& get() const { return socket_; }

private:
    std::unique_ptr<ChildProcess> lender_;
    posix::Descriptor tie_; ///< the lender stays until this is closed
    posix::Descriptor socket_;
};

/// The connection by such a socket.
class LentConnection {
public:
    explicit LentConnection(LentSocket socket) : socket_(std::move(socket)) {}

    WaylandConnection& get() { return *connection_; }
    const WaylandConnection& get() const { return *connection_; }

private:
    LentSocket socket_;
    std::unique_ptr<WaylandConnection> connection_ =
        std::make_unique<WaylandConnection>(socket_.get());
};

} // namespace hollowfernpike::test
