#include "platform/freedesktop/bus/SessionBus.h"

#include "platform/freedesktop/bus/BusProbe.h"
#include "platform/freedesktop/bus/ScreenLock.h"
#include "platform/qt/QtEventLoop.h"
#include "support/SessionBus.h"
#include "support/SilentSocket.h"
#include "support/TemporaryDirectory.h"
#include "support/WaitUntil.h"

#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

using namespace std::chrono_literals;

/// The session bus of this process.
class OwnBus : public test::SessionBus {
public:
    OwnBus() { ::setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), 1); }
};

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

    static QDBusMessage question(const char* method) {
        return QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                              "org.freedesktop.DBus", method);
    }

    bool answers() {
        const auto success = ping();
        EXPECT_TRUE(loop_.runUntil([&] { return success->has_value(); }));
        return success->value_or(false);
    }

    OwnBus ownBus_;
    test::EventLoop loop_;
    std::optional<SessionBus> bus_{std::in_place};
};

TEST_F(SessionBusTest, ABusThatComesBackIsUsedAgain) {
    EXPECT_TRUE(answers());
    ownBus_.end();
    EXPECT_TRUE(test::waitUntil([&] { return !answers(); }));
    int returns = 0;
    QObject::connect(&*bus_, &SessionBus::returned, [&] { ++returns; });
    ownBus_.startAgain();
    EXPECT_TRUE(loop_.runUntil([&] { return returns == 1; }));
    EXPECT_TRUE(answers());
}

TEST_F(SessionBusTest, ACallThatALostBusLeavesUnansweredFails) {
    ASSERT_TRUE(answers());
    ownBus_.daemon().signal(SIGSTOP);
    const auto unanswered = ping();
    ownBus_.end();
    EXPECT_TRUE(loop_.runUntil([&] { return unanswered->has_value(); }));
    EXPECT_EQ(*unanswered, false);
}

TEST_F(SessionBusTest, CallsWhileTheBusEndsAreAnsweredOnceEach) {
    constexpr int calls = 1000;
    std::thread end([this] { ownBus_.daemon().signal(SIGKILL); });
    std::vector<std::shared_ptr<std::optional<bool>>> answers;
    for (int index = 0; index < calls; ++index) {
        answers.push_back(ping());
    }
    end.join();
    for (const auto& answer : answers) {
        EXPECT_TRUE(loop_.runUntil([&] { return answer->has_value(); }));
    }
}

TEST_F(SessionBusTest, AnswersToCallsUnderWayAreDroppedWithIt) {
    ownBus_.daemon().signal(SIGSTOP);
    const auto unanswered = ping();
    bus_.reset();
    ownBus_.daemon().signal(SIGCONT);
    EXPECT_FALSE(loop_.runUntil([&] { return unanswered->has_value(); }, test::patience / 100));
}

TEST_F(SessionBusTest, AQuestionWaitsForItsAnswer) {
    EXPECT_FALSE(bus_->ask(question("GetId")).toString().isEmpty());
    EXPECT_FALSE(bus_->ask(question("NoSuchMethod")).isValid());
}

TEST_F(SessionBusTest, AQuestionToASilentBusIsGivenUp) {
    ownBus_.daemon().signal(SIGSTOP);
    EXPECT_FALSE(bus_->ask(question("GetId")).isValid());
    ownBus_.daemon().signal(SIGCONT);
}

// In mid-question the toolkit's own waits do not notice this.
TEST_F(SessionBusTest, AQuestionIsGivenUpWhenTheBusEnds) {
    ownBus_.daemon().signal(SIGSTOP);
    std::thread end([this] { ownBus_.daemon().signal(SIGKILL); });
    EXPECT_FALSE(bus_->ask(question("GetId")).isValid());
    end.join();
}

TEST_F(SessionBusTest, ACallMayHaveNoHandlerForTheAnswer) {
    bus_->call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                              "org.freedesktop.DBus.Peer", "Ping"),
               {});
    EXPECT_TRUE(answers());
}

class ScreenLockTest : public testing::Test {
protected:
    ~ScreenLockTest() override { leave(); }

    /// Another program on the bus tells that the screen is locked, or is so no longer. That has
    /// arrived on return.
    void announce(bool active, const char* interface = "org.gnome.ScreenSaver") {
        const auto ping = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                                         "org.freedesktop.DBus.Peer", "Ping");
        auto locker = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "locker");
        auto signal = QDBusMessage::createSignal("/a/path", interface, "ActiveChanged");
        signal << active;
        ASSERT_TRUE(locker.send(signal));
        ASSERT_EQ(locker.call(ping).type(), QDBusMessage::ReplyMessage);
        ASSERT_TRUE(bus_.waitFor(bus_.connection().asyncCall(ping), test::patience));
    }

    static void leave() { QDBusConnection::disconnectFromBus("locker"); }

    bool becomes(bool locked) {
        return loop_.runUntil([&] { return screen_.isLocked() == locked; });
    }

    OwnBus ownBus_;
    test::EventLoop loop_;
    SessionBus bus_;
    ScreenLock screen_{&bus_};
};

TEST_F(ScreenLockTest, FollowsTheLockerOfEachDesktop) {
    EXPECT_FALSE(screen_.isLocked());
    for (const auto* const interface :
         {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
          "org.mate.ScreenSaver", "org.xfce.ScreenSaver"}) {
        announce(true, interface);
        EXPECT_TRUE(becomes(true)) << interface;
        announce(false, interface);
        EXPECT_TRUE(becomes(false)) << interface;
    }
}

TEST_F(ScreenLockTest, AnnouncementsOfOtherThingsAreNone) {
    announce(true, "org.example.Printer");
    EXPECT_FALSE(screen_.isLocked());
    announce(true);
    EXPECT_TRUE(becomes(true));
    announce(false, "org.example.Printer");
    EXPECT_TRUE(screen_.isLocked());
}

TEST_F(ScreenLockTest, AChangeThatIsAnnouncedTwiceIsOne) {
    announce(true);
    announce(true);
    EXPECT_TRUE(becomes(true));
    announce(false);
    EXPECT_TRUE(becomes(false));
}

TEST_F(ScreenLockTest, ALockerThatCrashesLeavesTheScreenUnlocked) {
    announce(true);
    ASSERT_TRUE(becomes(true));
    leave();
    EXPECT_TRUE(becomes(false));
}

TEST_F(ScreenLockTest, ABusThatEndsTakesTheLockAlongAndTheNextOneIsFollowed) {
    announce(true);
    ASSERT_TRUE(becomes(true));
    int returns = 0;
    QObject::connect(&bus_, &SessionBus::returned, [&] { ++returns; });
    ownBus_.end();
    EXPECT_TRUE(becomes(false));
    leave();
    ownBus_.startAgain();
    ASSERT_TRUE(loop_.runUntil([&] { return returns == 1; }));
    announce(true);
    EXPECT_TRUE(becomes(true));
}

TEST(NoScreenLockTest, WithoutABusTheScreenIsNeverLocked) {
    EXPECT_FALSE(ScreenLock(nullptr).isLocked());
}

TEST(BusProbeTest, ABusAnswersAndOneThatIsGoneIsKnownAtOnce) {
    OwnBus bus;
    const auto address = SessionBus::addressOfSession();
    EXPECT_TRUE(busAnswers(address, test::patience));
    bus.end();
    EXPECT_TRUE(busAnswers(address, test::patience));
}

TEST(BusProbeTest, ASilentBusDoesNotAnswer) {
    const test::TemporaryDirectory home;
    const test::SilentSocket silent(home.path() / "a bus");
    EXPECT_FALSE(busAnswers("unix:path=" + home.path().string() + "/a%20bus", 10ms));
}

TEST(BusProbeTest, ABusThatOnlyBeginsToAnswerDoesNotEither) {
    OwnBus bus;
    bus.daemon().signal(SIGSTOP);
    EXPECT_FALSE(busAnswers(SessionBus::addressOfSession(), 10ms));
    bus.daemon().signal(SIGCONT);
}

TEST(SilentBusTest, IsConnectedToOnceItAnswers) {
    OwnBus bus;
    const auto address = SessionBus::addressOfSession();
    bus.daemon().signal(SIGSTOP);
    test::EventLoop loop;
    SessionBus connection(address, SessionBus::answers(address));
    EXPECT_FALSE(connection.connection().isConnected());
    bus.daemon().signal(SIGCONT);
    EXPECT_TRUE(loop.runUntil([&] { return connection.connection().isConnected(); }));
}

} // namespace

} // namespace hollowfernpike::freedesktop
