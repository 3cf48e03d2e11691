#include "platform/freedesktop/bus/SessionBus.h"

#include "platform/qt/QtEventLoop.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

/// A bus with a fixed address, which the next bus has, too, as the user's bus does.
class SessionBusTest : public testing::Test {
protected:
    SessionBusTest() {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), 1);
        startDaemon();
        bus_.emplace();
    }

    std::string address() const { return "unix:path=" + (home_.path() / "bus").string(); }

    void startDaemon() {
        daemon_ = std::make_unique<test::ChildProcess>(std::vector<std::string>{
            "dbus-daemon", "--session", "--nofork", "--address=" + address(), "--print-address=1"});
        ASSERT_TRUE(daemon_->waitForLine("")) << daemon_->errors();
    }

    void endDaemon() {
        daemon_->signal(SIGKILL);
        ASSERT_TRUE(daemon_->wait());
        std::filesystem::remove(home_.path() / "bus");
    }

    /// Asks the bus. The result becomes true for an answer and false for a failure.
    std::shared_ptr<std::optional<bool>> ping() {
        auto success = std::make_shared<std::optional<bool>>();
        bus_->call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                                  "org.freedesktop.DBus.Peer", "Ping"),
                   [success](const auto& failure) {
                       EXPECT_FALSE(*success) << "answered twice";
                       *success = !failure;
                   });
        return success;
    }

    bool answers() {
        const auto success = ping();
        EXPECT_TRUE(loop_.runUntil([&] { return success->has_value(); }));
        return success->value_or(false);
    }

    test::TemporaryDirectory home_;
    test::EventLoop loop_;
    std::unique_ptr<test::ChildProcess> daemon_;
    std::optional<SessionBus> bus_;
};

TEST_F(SessionBusTest, ABusThatComesBackIsUsedAgain) {
    EXPECT_TRUE(answers());
    endDaemon();
    EXPECT_TRUE(test::waitUntil([&] { return !answers(); }));
    int returns = 0;
    QObject::connect(&*bus_, &SessionBus::returned, [&] { ++returns; });
    startDaemon();
    EXPECT_TRUE(loop_.runUntil([&] { return returns == 1; }));
    EXPECT_TRUE(answers());
}

TEST_F(SessionBusTest, ACallThatALostBusLeavesUnansweredFails) {
    ASSERT_TRUE(answers());
    daemon_->signal(SIGSTOP);
    const auto unanswered = ping();
    endDaemon();
    EXPECT_TRUE(loop_.runUntil([&] { return unanswered->has_value(); }));
    EXPECT_EQ(*unanswered, false);
}

TEST_F(SessionBusTest, AnswersToCallsUnderWayAreDroppedWithIt) {
    daemon_->signal(SIGSTOP);
    const auto unanswered = ping();
    bus_.reset();
    daemon_->signal(SIGCONT);
    EXPECT_FALSE(loop_.runUntil([&] { return unanswered->has_value(); }, test::patience / 100));
}

TEST_F(SessionBusTest, ACallMayHaveNoHandlerForTheAnswer) {
    bus_->call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                              "org.freedesktop.DBus.Peer", "Ping"),
               {});
    EXPECT_TRUE(answers());
}

} // namespace

} // namespace hollowfernpike::freedesktop
