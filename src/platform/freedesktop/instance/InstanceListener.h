#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/files/Descriptor.h"
#include "platform/freedesktop/files/PrivateDirectory.h"
#include "platform/freedesktop/instance/InstanceRequest.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

#include <unistd.h>

namespace hollowfernpike::freedesktop {

/// Called with each request, on the main thread. It may destroy who calls.
using InstanceRequestHandler = std::function<void(const InstanceRequest&)>;

/// Takes requests from other processes of the same user, over a socket in the file system that goes
/// away with the object. Never waits for any of them: whoever is connected and silent is forgotten
/// when too many are. Main thread only.
class InstanceListener {
public:
    /// The directory and the loop outlive this. Requests of users other than `user` are dropped.
    /// Throws platform::FileError if there can be no such socket.
    InstanceListener(const PrivateDirectory& directory, std::string name,
                     platform::RunLoop& runLoop, InstanceRequestHandler onRequest,
                     uid_t user = ::geteuid());
    InstanceListener(const InstanceListener&) = delete;
    InstanceListener& operator=(const InstanceListener&) = delete;
    ~InstanceListener();

private:
    struct Client {
        Descriptor socket;
        std::unique_ptr<platform::Subscription> watch;
    };

    void accept();
    void serve(int client);

    const PrivateDirectory& directory_;
    std::string name_;
    platform::RunLoop& runLoop_;
    InstanceRequestHandler onRequest_;
    uid_t user_;
    Descriptor socket_;
    std::map<int, Client> clients_; // the oldest first
    int lastClient_ = 0;
    std::unique_ptr<platform::Subscription> watch_;
};

} // namespace hollowfernpike::freedesktop
