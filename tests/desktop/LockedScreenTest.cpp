#include "desktop/RecordedTraffic.h"
#include "desktop/Story.h"
#include "platform/x11/taps/TakenInput.h"
#include "support/BusConnection.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <csignal>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace hollowfernpike {
namespace {

using namespace test;

std::string objectOf(std::string service) {
    std::ranges::replace(service, '.', '/');
    return '/' + service;
}

/// The utility only observes a combination that another program holds, too, and observing goes on
/// behind a locker.
class BehindLockerTest : public testing::Test {
protected:
    BehindLockerTest() {
        story.bind(bound, hidden);
        story.bind(another, front);
        EXPECT_TRUE(rival.grab(story.grabOf(bound)));
        story.writeShortcuts();
        story.launchUtility();
        EXPECT_TRUE(story.isLive(story.grabOf(another)));
    }

    x11::TakenDevices devices() {
        ++ownQuestions;
        return input_.devices();
    }

    /// Strikes it and waits until the utility has seen every press.
    void strikeBehindLocker(const Combination& combination) {
        const auto before = questionsOfUtility();
        story.strike(combination);
        EXPECT_TRUE(isSeenByTheUtility(before, combination.keys().size()));
    }

    /// A program answers a call on the bus after what it got before.
    void utilityReadsItsBus() const {
        const std::string utility = "app.hollowfernpike.Hollowfernpike";
        callOnBus(story.desktop,
                  {utility, objectOf(utility), "org.freedesktop.DBus.Introspectable.Introspect"});
    }

    void nothingIsLaunchedUntilNow() {
        story.strike(another);
        ASSERT_TRUE(story.isInFront(front));
        EXPECT_EQ(hidden.starts(), 0U);
    }

    void launchingWorks() {
        story.strike(bound);
        EXPECT_TRUE(story.isInFront(hidden));
    }

    Story story;
    XClient rival{story.desktop.display()};
    Application& front = story.open("Front");
    Application& hidden = story.install("Hidden");
    std::size_t ownQuestions = 0; ///< whether the keyboard is taken, and attempts to take it

private:
    /// The utility asks whether the keyboard is taken when it begins to observe, and at each press.
    std::size_t questionsOfUtility() {
        EXPECT_TRUE(waitUntil([this] { return questions_.of(::getpid()) == ownQuestions; }));
        return questions_.of(story.utility().pid());
    }

    testing::AssertionResult isSeenByTheUtility(std::size_t before, std::size_t presses) {
        const auto seen = [&] { return questions_.of(story.utility().pid()) - before; };
        return waitUntil([&] { return seen() >= presses; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << seen() << " presses of " << presses;
    }

    std::unique_ptr<x11::Connection> connection_ = x11::Connection::open(story.desktop.display());
    x11::TakenInput input_{*connection_};
    RecordedTraffic questions_ =
        RecordedTraffic::ofRequests(story.desktop.display(), XCB_GRAB_KEYBOARD);
};

using Command = std::vector<std::string>;

struct Locker {
    Command lock;
    Command unlock; ///< empty if `lock` is the locker itself, which is killed instead

    /// The name on the bus of a locker which, if the system asks this user for no password, unlocks
    /// itself at the first key. Such a locker is stopped while the keys are pressed. Empty for
    /// others.
    std::string service;
};

std::ostream& operator<<(std::ostream& stream, const Locker& locker) {
    return stream << locker.lock.front();
}

class LockedScreenTest : public BehindLockerTest, public testing::WithParamInterface<Locker> {
protected:
    void lock() {
        locker_ = story.desktop.start(GetParam().lock);
        if (!GetParam().unlock.empty()) {
            ASSERT_EQ(locker_->wait(), 0) << locker_->errors();
        }
        ASSERT_TRUE(waitUntil([this] { return devices().pointer && devices().keyboard; }))
            << locker_->errors();
        if (!GetParam().service.empty()) {
            ASSERT_EQ(::kill(process(), SIGSTOP), 0);
        }
    }

    void unlock() {
        if (!GetParam().service.empty()) {
            ASSERT_EQ(::kill(process(), SIGCONT), 0);
        }
        if (!GetParam().unlock.empty()) {
            story.run(GetParam().unlock);
        }
        locker_.reset();
        ASSERT_TRUE(waitUntil([this] { return !devices().keyboard; }));
        if (!GetParam().service.empty()) {
            ASSERT_TRUE(waitUntil([this] { return askBus("NameHasOwner") == "(false,)\n"; }));
            utilityReadsItsBus();
        }
    }

private:
    /// The bus's answer to a question about the locker.
    std::string askBus(const std::string& question) const {
        return callOnBus(story.desktop, {"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                         "org.freedesktop.DBus." + question, GetParam().service});
    }

    pid_t process() const {
        const auto answer = askBus("GetConnectionUnixProcessID");
        return std::stoi(answer.substr(answer.find(' '))); // (uint32 4711,)
    }

    std::unique_ptr<ChildProcess> locker_;
};

TEST_P(LockedScreenTest, NothingIsLaunchedBehindIt) {
    lock();
    strikeBehindLocker(bound);
    strikeBehindLocker(bound);
    unlock();
    nothingIsLaunchedUntilNow();
    launchingWorks();
}

std::string lockerName(const testing::TestParamInfo<Locker>& info) {
    auto name = info.param.lock.front();
    std::ranges::replace(name, '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Of, LockedScreenTest,
                         testing::Values(Locker{{"i3lock", "--nofork"}, {}, {}},
                                         Locker{{"xsecurelock"}, {}, {}},
                                         Locker{{"cinnamon-screensaver-command", "--lock"},
                                                {"cinnamon-screensaver-command", "--exit"},
                                                "org.cinnamon.ScreenSaver"}),
                         lockerName);

/// A locker that shows its dialog: the pointer is the user's again.
class LockerDialogTest : public BehindLockerTest {
protected:
    /// As all lockers of the large desktops do.
    void announce(bool active) {
        const std::string interface = "org.cinnamon.ScreenSaver";
        ASSERT_TRUE(g_dbus_connection_emit_signal(
            connection_.get(), nullptr, objectOf(interface).c_str(), interface.c_str(),
            "ActiveChanged", g_variant_new("(b)", static_cast<gboolean>(active)), nullptr));
        ASSERT_TRUE(g_dbus_connection_flush_sync(connection_.get(), nullptr, nullptr));
        utilityReadsItsBus();
    }

    bool lockerTakesKeyboard() {
        ++ownQuestions;
        return locker.grabKeyboard();
    }

    XClient locker{story.desktop.display()};

private:
    BusConnection connection_ = connectToBus(story.desktop.bus().address());
};

TEST_F(LockerDialogTest, NothingIsLaunchedBehindIt) {
    announce(true);
    ASSERT_TRUE(lockerTakesKeyboard());
    strikeBehindLocker(bound);
    locker.giveInputBack();
    announce(false);
    nothingIsLaunchedUntilNow();
    launchingWorks();
}

} // namespace
} // namespace hollowfernpike
