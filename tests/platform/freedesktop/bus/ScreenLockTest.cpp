#include "platform/freedesktop/bus/ScreenLock.h"

#include "platform/freedesktop/bus/FixedBus.h"
#include "platform/freedesktop/bus/SessionBus.h"
#include "platform/qt/QtEventLoop.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

namespace hollowfernpike::freedesktop {

namespace {

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

    test::FixedBus fixedBus_;
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
    fixedBus_.end();
    EXPECT_TRUE(becomes(false));
    leave();
    fixedBus_.start();
    ASSERT_TRUE(loop_.runUntil([&] { return returns == 1; }));
    announce(true);
    EXPECT_TRUE(becomes(true));
}

TEST(NoScreenLockTest, WithoutABusTheScreenIsNeverLocked) {
    EXPECT_FALSE(ScreenLock(nullptr).isLocked());
}

} // namespace

} // namespace hollowfernpike::freedesktop
