#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/instance/InstanceListener.h"
#include "platform/freedesktop/instance/InstanceRequest.h"
#include "platform/freedesktop/instance/PrivateDirectory.h"
#include "platform/posix/Descriptor.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace hollowfernpike::freedesktop {

/// Held by one process of a user at a time, and free again as soon as that process has ended, in
/// whatever way. Requests to the holder wait until it listens.
class InstanceLock {
public:
    /// Null if another one holds the lock. `name` is what the lock's files are called in the
    /// runtime directory, before the extension. Throws platform::FileError if the lock's files
    /// cannot be used.
    static std::unique_ptr<InstanceLock> acquire(const std::string& name);

    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;
    ~InstanceLock();

    /// From now on takes requests from other processes, on the main loop. The loop outlives this.
    /// The handler may destroy the lock. Requests that `mayBeDone` denies are refused.
    void listen(platform::RunLoop& runLoop, InstanceRequestHandler onRequest,
                InstanceRequestJudge mayBeDone = {});

private:
    InstanceLock(PrivateDirectory directory, std::string socketName, posix::Descriptor file);

    PrivateDirectory directory_;
    std::string socketName_;
    posix::Descriptor file_;
    posix::Descriptor socket_;
    std::optional<InstanceListener> listener_;
};

/// How an attempt to hand over a request has ended. None is set if the holder of the lock is
/// alive but does not answer.
struct HandOver {
    bool isTaken = false;                    ///< the holder has the request
    bool isRefused = false;                  ///< the holder has it and cannot carry it out
    std::unique_ptr<InstanceLock> lock = {}; ///< the holder is gone, and the lock is ours
};

/// Hands a request over to the holder of the lock and waits until it is taken, also for a holder
/// that is still starting; gives up when `patience` is over. Throws as acquire() does.
HandOver handOver(const std::string& name, const InstanceRequest& request,
                  std::chrono::milliseconds patience = std::chrono::seconds{2});

} // namespace hollowfernpike::freedesktop
