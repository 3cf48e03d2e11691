#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/instance/InstanceRequest.h"
#include "platform/freedesktop/instance/PrivateDirectory.h"
#include "platform/posix/Descriptor.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

/// The lock holder's answers to a request that it has received.
constexpr std::string_view acknowledgement = "taken\n";
constexpr std::string_view refusal = "refused\n";

/// Sockets that carry one request and its answer, each in one piece. They never block, and programs
/// that we start do not inherit them. Failures throw std::system_error.

/// A socket that listens at this name, in place of one that an earlier process left. It gets the
/// name only once it listens, so a process that finds it there can connect.
posix::Descriptor listeningSocket(const PrivateDirectory& directory, const std::string& name);

/// A socket that is connected to the one at this name; fails if nobody listens there.
posix::Descriptor connectedSocket(const PrivateDirectory& directory, const std::string& name);

/// Takes requests from other processes of the same user, over a socket that listens. Never waits
/// for a client: when more than 16 are connected, the oldest connection is closed. While the
/// process is out of descriptors, clients wait, and it looks for them once a second. Main thread
/// only.
class InstanceListener {
public:
    /// The socket and the loop outlive this. Requests of users other than `user` are dropped, and
    /// those that `mayBeDone` denies are refused.
    InstanceListener(const posix::Descriptor& socket, platform::RunLoop& runLoop,
                     InstanceRequestHandler onRequest, InstanceRequestJudge mayBeDone = {},
                     uid_t user = ::geteuid());
    InstanceListener(const InstanceListener&) = delete;
    InstanceListener& operator=(const InstanceListener&) = delete;
    ~InstanceListener() = default;

private:
    struct Client {
        posix::Descriptor socket;
        std::unique_ptr<platform::Subscription> watch;
    };

    void listen();
    void accept();
    void rest();
    void serve(int client);

    const posix::Descriptor& socket_;
    platform::RunLoop& runLoop_;
    InstanceRequestHandler onRequest_;
    InstanceRequestJudge mayBeDone_;
    uid_t user_;
    std::map<int, Client> clients_; // the oldest first
    int lastClient_ = 0;
    posix::Descriptor alarm_; ///< made early: later there may be no descriptor left for it
    std::unique_ptr<platform::Subscription> watch_; ///< of the socket or the alarm
};

} // namespace hollowfernpike::freedesktop
