#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <memory>
#include <string>
#include <vector>

namespace hollowfernpike::test {

/// Whose process a session bus is, and with it the services that the bus starts.
enum class BusOwner { tests, sessionUser };

/// A session bus of its own (dbus-daemon), ready for clients: those of its owner and of root. It
/// starts the services in the data directories that the environment names, and no others of the
/// machine. Throws std::runtime_error if it cannot be started.
class SessionBus {
public:
    explicit SessionBus(const Environment& environment = {}, BusOwner owner = BusOwner::tests);

    const std::string& address() const { return address_; }
    ChildProcess& daemon() { return *daemon_; }

    /// Kills the daemon, as a crash would.
    void end();

    /// Starts another one at the same address, as the user's next bus is.
    void startAgain();

private:
    std::string start();

    TemporaryDirectory directory_;
    Environment environment_;
    std::vector<std::string> command_;
    std::unique_ptr<ChildProcess> daemon_;
    std::string address_;
};

/// Calls a method on the session bus that the environment names and returns the answer: the name on
/// the bus, the object, the method with its interface, and arguments in GVariant's text form.
/// Throws std::runtime_error if it fails.
std::string callOnBus(const Environment& environment, const std::vector<std::string>& arguments);

} // namespace hollowfernpike::test
