#pragma once

#include "platform/RunLoop.h"
#include "platform/freedesktop/Descriptor.h"
#include "platform/freedesktop/Releaser.h"

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include <systemd/sd-bus.h>

namespace hollowfernpike::freedesktop {

/// A method of an object on the bus, and what to call it with.
struct BusCall {
    std::string destination;
    std::string object;
    std::string interface;
    std::string method;
    std::function<int(sd_bus_message*)> appendArguments = {}; ///< negative on failure; may be empty
    bool startsService = true;                                ///< the bus may start the destination
};

/// The user's session bus, if it is on a local socket. Connects with the first call, and again with
/// the next one when it is lost, without ever waiting for it. Never starts a bus where there is
/// none. Main thread only.
class SessionBus {
public:
    /// Runs exactly once, on the main thread, inside or after the call: with nothing on success,
    /// else with the reason. May be empty. Earlier calls that a lost connection has left
    /// unanswered are answered inside the next call at the latest.
    using Answer = std::function<void(const std::optional<std::string>& failure)>;

    /// The loop outlives this.
    explicit SessionBus(platform::RunLoop& runLoop) : runLoop_(runLoop) {}
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    /// Answers to calls under way are dropped.
    ~SessionBus() = default;

    /// Whether this session has a bus on a local socket, as far as its environment tells. Others
    /// do not count: to connect could start a bus or take long.
    static bool isKnown();

    void call(const BusCall& call, const Answer& answer);

private:
    using Connection = std::unique_ptr<sd_bus, Releaser<&sd_bus_unref>>;
    using Message = std::unique_ptr<sd_bus_message, Releaser<&sd_bus_message_unref>>;
    using Slot = std::unique_ptr<sd_bus_slot, Releaser<&sd_bus_slot_unref>>;

    struct Pending {
        SessionBus* bus = nullptr;
        Answer answer = {};
        Slot slot = {};
    };

    bool isOpen() const;
    void connect();
    Message messageFor(const BusCall& call) const;
    void send(const BusCall& call, Answer answer);
    void process();

    /// Answers to calls under way with the reason.
    void disconnect(const std::string& reason);

    static int onAnswered(sd_bus_message* reply, void* pending, sd_bus_error* failure);

    platform::RunLoop& runLoop_;
    Connection connection_;
    std::list<Pending> pending_;
    Descriptor watched_; ///< a copy of our own, for the connection closes its own when it is lost
    std::unique_ptr<platform::Subscription> readable_;
};

} // namespace hollowfernpike::freedesktop
