#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/files/Descriptor.h"
#include "platform/freedesktop/files/PrivateDirectory.h"
#include "platform/freedesktop/instance/InstanceListener.h"
#include "platform/freedesktop/instance/InstanceRequest.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace hollowfernpike::freedesktop {

/// Held by one process of a user at a time. It is free again as soon as that process has ended, in
/// whatever way.
class InstanceLock {
public:
    /// Absent if another one holds the lock. `name` tells locks apart, and may hold any text, such
    /// as the name of a display. Throws platform::FileError if the lock's file cannot be used.
    static std::optional<InstanceLock> acquire(const std::string& name);

    /// From now on takes what others hand over, on the main loop, which outlives this, as the
    /// handler need not: it may destroy the lock. Throws platform::FileError if that cannot be.
    void listen(platform::RunLoop& runLoop, InstanceRequestHandler onRequest);

private:
    struct Held {
        PrivateDirectory directory;
        std::string name;
        Descriptor file;
        std::unique_ptr<InstanceListener> listener;
    };

    explicit InstanceLock(std::unique_ptr<Held> held) : held_(std::move(held)) {}

    std::unique_ptr<Held> held_;
};

/// How an attempt to hand over a request has ended. Neither if the holder of the lock is alive but
/// does not answer.
struct HandOver {
    bool isTaken = false;             ///< the holder has the request
    std::optional<InstanceLock> lock; ///< the holder is gone, and the lock is ours
};

/// Hands a request over to the holder of the lock and waits until it is taken, also for a holder
/// that is still starting; gives up when `patience` is over. Throws as acquire() does.
HandOver handOver(const std::string& name, const InstanceRequest& request,
                  std::chrono::milliseconds patience = std::chrono::seconds{5});

} // namespace hollowfernpike::freedesktop
