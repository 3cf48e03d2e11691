#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace hollowfernpike::test {

/// The session bus of this process, at an address which the next bus has, too, as the user's does.
class FixedBus {
public:
    FixedBus() {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), 1);
        start();
    }

    void start() {
        daemon_ = std::make_unique<ChildProcess>(std::vector<std::string>{
            "dbus-daemon", "--session", "--nofork", "--address=" + address(), "--print-address=1"});
        ASSERT_TRUE(daemon_->waitForLine("")) << daemon_->errors();
    }

    void end() {
        daemon_->signal(SIGKILL);
        ASSERT_TRUE(daemon_->wait());
        std::filesystem::remove(home_.path() / "bus");
    }

    ChildProcess& daemon() { return *daemon_; }

private:
    std::string address() const { return "unix:path=" + (home_.path() / "bus").string(); }

    TemporaryDirectory home_;
    std::unique_ptr<ChildProcess> daemon_;
};

} // namespace hollowfernpike::test
