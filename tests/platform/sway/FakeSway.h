#pragma once

#include "platform/posix/Descriptor.h"
#include "support/TemporaryDirectory.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace hollowfernpike::test {

/// The other side of sway's socket, for answers that sway cannot be made to give.
class FakeSway {
public:
    FakeSway();

    std::string path() const { return (directory_.path() / "ipc").string(); }

    /// Waits for the next client and forgets the one before, without closing its connection.
    void accept();

    /// Ends the present connection.
    void hangUp() { client_ = posix::Descriptor{}; }

    /// Nobody can connect any more.
    void vanish();

    /// Waits for a message of the present client and returns its payload.
    std::string receive();

    void send(std::uint32_t kind, std::string_view payload);
    void sendBytes(std::string_view bytes);

private:
    TemporaryDirectory directory_;
    posix::Descriptor socket_;
    posix::Descriptor client_;
    posix::Descriptor formerClient_;
};

/// A message in the form of the protocol.
std::string ipcMessage(std::uint32_t kind, std::string_view payload);

} // namespace hollowfernpike::test
