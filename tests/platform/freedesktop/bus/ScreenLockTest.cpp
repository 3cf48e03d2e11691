#include "platform/freedesktop/bus/ScreenLock.h"

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

class ScreenLockTest : public testing::Test {
protected:
    ScreenLockTest() {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), 1);
        startDaemon();
        bus_.emplace();
        screen_.emplace(&*bus_);
    }

    ~ScreenLockTest() override { leave(); }

    std::string address() const { return "unix:path=" + (home_.path() / "bus").string(); }

    void startDaemon() {
        daemon_ = std::make_unique<test::ChildProcess>(std::vector<std::string>{
            "dbus-daemon", "--session", "--nofork", "--address=" + address(), "--print-address=1"});
        ASSERT_TRUE(daemon_->waitForLine("")) << daemon_->errors();
    }

    /// Another program on the bus tells that the screen is locked, or is so no longer.
    static void announce(bool active, const char* interface = "org.gnome.ScreenSaver") {
        auto locker = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "locker");
        auto signal = QDBusMessage::createSignal("/a/path", interface, "ActiveChanged");
        signal << active;
        ASSERT_TRUE(locker.send(signal));
    }

    static void leave() { QDBusConnection::disconnectFromBus("locker"); }

    bool becomes(bool locked) {
        return loop_.runUntil([&] { return screen_->isLocked() == locked; });
    }

    test::TemporaryDirectory home_;
    test::EventLoop loop_;
    std::unique_ptr<test::ChildProcess> daemon_;
    std::optional<SessionBus> bus_;
    std::optional<ScreenLock> screen_;
};

TEST_F(ScreenLockTest, FollowsTheLockerOfEachDesktop) {
    EXPECT_FALSE(screen_->isLocked());
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
    announce(true);
    EXPECT_TRUE(becomes(true));
    announce(false, "org.example.Printer");
    announce(true, "org.example.Printer");
    announce(false);
    EXPECT_TRUE(becomes(false));
}

// KDE announces each change on two objects.
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
    QObject::connect(&*bus_, &SessionBus::returned, [&] { ++returns; });
    daemon_->signal(SIGKILL);
    ASSERT_TRUE(daemon_->wait());
    EXPECT_TRUE(becomes(false));
    leave();
    std::filesystem::remove(home_.path() / "bus");
    startDaemon();
    ASSERT_TRUE(loop_.runUntil([&] { return returns == 1; }));
    announce(true);
    EXPECT_TRUE(becomes(true));
}

TEST(NoScreenLockTest, WithoutABusTheScreenIsNeverLocked) {
    EXPECT_FALSE(ScreenLock(nullptr).isLocked());
}

} // namespace

} // namespace hollowfernpike::freedesktop
