#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/freedesktop/instance/InstanceLock.h"
#include "platform/freedesktop/instance/InstanceRequest.h"
#include "platform/freedesktop/instance/InstanceService.h"

#include <exception>
#include <memory>
#include <optional>
#include <string>

namespace hollowfernpike::freedesktop {

/// The instance that is running cannot carry a request out.
class RequestRefused : public std::exception {
public:
    const char* what() const noexcept override { return "the running instance refuses"; }
};

/// The one instance of the program that a user runs. Further starts find it by a lock and a socket
/// in the runtime directory; launchers, and starts with another runtime directory, find it by its
/// name on the session bus. Main thread only.
class Instance {
public:
    struct Names {
        std::string lock;        ///< as InstanceLock has it
        std::string bus;         ///< as InstanceService has it
        std::string plainAction; ///< likewise
    };

    /// Hands `request` over to the instance that is running, if any. Null if that one has taken it;
    /// else this process is the instance from now on. Throws platform::LocalizedError if the other
    /// one does not answer, platform::FileError if the lock cannot be used, and RequestRefused if
    /// the other one cannot carry the request out.
    static std::unique_ptr<Instance> become(Names names, const InstanceRequest& request);

    enum class Publication : unsigned char {
        done,       ///< as far as the bus answers
        handedOver, ///< another instance has taken the request
        impossible, ///< another program has our name on the bus
    };

    /// Does the same over the bus; needs the application object. The bus outlives this.
    Publication publish(const SessionBus& bus, const InstanceRequest& request);

    /// From now on takes requests, those that came before included. Other starts are told which of
    /// theirs `mayBeDone` denies; on the bus these are passed on like any other. The loop outlives
    /// this.
    void listen(platform::RunLoop& runLoop, const InstanceRequestHandler& onRequest,
                InstanceRequestJudge mayBeDone = {});

private:
    Instance(Names names, std::unique_ptr<InstanceLock> lock)
        : names_(std::move(names)), lock_(std::move(lock)) {}

    Names names_;
    std::unique_ptr<InstanceLock> lock_;
    std::optional<InstanceService> service_;
};

} // namespace hollowfernpike::freedesktop
