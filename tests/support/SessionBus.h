#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <memory>
#include <string>

namespace hollowfernpike::test {

/// A session bus of its own (dbus-daemon), ready for clients. It starts the services in the data
/// directories that the environment names, and no others of the machine.
class SessionBus {
public:
    explicit SessionBus(const Environment& environment = {});

    const std::string& address() const { return address_; }
    ChildProcess& daemon() { return *daemon_; }

private:
    TemporaryDirectory directory_;
    std::unique_ptr<ChildProcess> daemon_;
    std::string address_;
};

} // namespace hollowfernpike::test
