#include "platform/freedesktop/bus/SessionBus.h"

#include "platform/freedesktop/bus/FixedBus.h"
#include "platform/qt/QtEventLoop.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <memory>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

class SessionBusTest : public testing::Test {
protected:
    /// Asks the bus. The result becomes true for an answer and false for a failure.
    std::shared_ptr<std::optional<bool>> ping() {
        auto success = std::make_shared<std::optional<bool>>();
        bus_->call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                                  "org.freedesktop.DBus.Peer", "Ping"),
                   [success](const QDBusMessage& reply) {
                       EXPECT_FALSE(*success) << "answered twice";
                       *success = reply.type() == QDBusMessage::ReplyMessage;
                   });
        return success;
    }

    bool answers() {
        const auto success = ping();
        EXPECT_TRUE(loop_.runUntil([&] { return success->has_value(); }));
        return success->value_or(false);
    }

    test::FixedBus fixedBus_;
    test::EventLoop loop_;
    std::optional<SessionBus> bus_{std::in_place};
};

TEST_F(SessionBusTest, ABusThatComesBackIsUsedAgain) {
    EXPECT_TRUE(answers());
    fixedBus_.end();
    EXPECT_TRUE(test::waitUntil([&] { return !answers(); }));
    int returns = 0;
    QObject::connect(&*bus_, &SessionBus::returned, [&] { ++returns; });
    fixedBus_.start();
    EXPECT_TRUE(loop_.runUntil([&] { return returns == 1; }));
    EXPECT_TRUE(answers());
}

TEST_F(SessionBusTest, ACallThatALostBusLeavesUnansweredFails) {
    ASSERT_TRUE(answers());
    fixedBus_.daemon().signal(SIGSTOP);
    const auto unanswered = ping();
    fixedBus_.end();
    EXPECT_TRUE(loop_.runUntil([&] { return unanswered->has_value(); }));
    EXPECT_EQ(*unanswered, false);
}

TEST_F(SessionBusTest, AnswersToCallsUnderWayAreDroppedWithIt) {
    fixedBus_.daemon().signal(SIGSTOP);
    const auto unanswered = ping();
    bus_.reset();
    fixedBus_.daemon().signal(SIGCONT);
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
