#include "desktop/RecordedTraffic.h"
#include "desktop/Story.h"
#include "platform/qt/Pointer.h"
#include "platform/x11/taps/TakenInput.h"
#include "support/WaitUntil.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

using Command = std::vector<std::string>;

struct Locker {
    Command lock;
    Command unlock;      ///< empty if `lock` is the locker itself, which is killed instead
    std::string service; ///< the bus name of a locker that announces that it has the screen, and
                         ///< gives the pointer back for its dialog; empty if it does neither
};

std::ostream& operator<<(std::ostream& stream, const Locker& locker) {
    return stream << locker.lock.front();
}

/// The utility only observes a combination that another program holds, too, and observing goes on
/// behind a locker.
class LockedScreenTest : public testing::TestWithParam<Locker> {
protected:
    LockedScreenTest() {
        story.bind(bound, hidden);
        story.bind(another, front);
        EXPECT_TRUE(rival.grab(story.grabOf(bound)));
        story.writeShortcuts();
        story.launchUtility();
        EXPECT_TRUE(story.isLive(story.grabOf(another)));
    }

    void lock() {
        locker_ = story.desktop.start(GetParam().lock);
        if (!GetParam().unlock.empty()) {
            ASSERT_EQ(locker_->wait(), 0) << locker_->errors();
        }
        ASSERT_TRUE(waitUntil([this] {
            return input_.devices().pointer && input_.devices().keyboard;
        })) << locker_->errors();
        if (!GetParam().service.empty()) {
            ASSERT_TRUE(waitUntil([this] { return announcesItself(); }));
            utilityReadsItsBus();
        }
    }

    void unlock() {
        if (!GetParam().unlock.empty()) {
            story.run(GetParam().unlock);
        }
        locker_.reset();
        ASSERT_TRUE(waitUntil([this] { return !input_.devices().keyboard; }));
    }

    /// Strikes it and waits until the utility has seen every press.
    void strikeBehindLocker(const Combination& combination) {
        presses_ += combination.keys().size();
        story.strike(combination);
        EXPECT_TRUE(isSeenByTheUtility(presses_));
    }

    /// The mouse makes a locker that gives the pointer back show its dialog.
    void wakeWithTheMouse() {
        Pointer mouse(story.desktop.display());
        int x = 0;
        EXPECT_TRUE(waitUntil([&] {
            mouse.moveTo(x += 10, 100);
            return !input_.devices().pointer;
        }));
        EXPECT_TRUE(input_.devices().keyboard);
    }

    /// Waits until the utility has seen so many presses: at each it sends a request to learn
    /// whether the keyboard is taken.
    testing::AssertionResult isSeenByTheUtility(std::size_t presses) {
        return waitUntil([&] { return questions_.of(story.utility().pid()) >= presses; })
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure()
                         << questions_.of(story.utility().pid()) << " presses of " << presses;
    }

    bool announcesItself() const {
        return callOnBus(story.desktop, {GetParam().service, objectOf(GetParam().service),
                                         GetParam().service + ".GetActive"}) == "(true,)\n";
    }

    /// A program answers a call on the bus after what it got before.
    void utilityReadsItsBus() const {
        const std::string utility = "app.hollowfernpike.Hollowfernpike";
        callOnBus(story.desktop,
                  {utility, objectOf(utility), "org.freedesktop.DBus.Introspectable.Introspect"});
    }

    static std::string objectOf(std::string service) {
        std::ranges::replace(service, '.', '/');
        return '/' + service;
    }

    Story story;
    XClient rival{story.desktop.display()};
    Application& front = story.open("Front");
    Application& hidden = story.install("Hidden");

private:
    std::unique_ptr<x11::Connection> connection_ = x11::Connection::open(story.desktop.display());
    x11::TakenInput input_{*connection_};
    RecordedTraffic questions_ =
        RecordedTraffic::ofRequests(story.desktop.display(), XCB_GRAB_KEYBOARD);
    std::unique_ptr<ChildProcess> locker_;
    std::size_t presses_ = 0; ///< of keys, behind the locker
};

TEST_P(LockedScreenTest, NothingIsLaunchedBehindIt) {
    lock();
    strikeBehindLocker(bound);
    strikeBehindLocker(bound);
    unlock();
    story.strike(another);
    ASSERT_TRUE(story.isInFront(front));
    EXPECT_EQ(hidden.starts(), 0U);

    story.strike(bound);
    EXPECT_TRUE(story.isInFront(hidden));
}

using LockerDialogTest = LockedScreenTest;

TEST_P(LockerDialogTest, NothingIsLaunchedBehindIt) {
    lock();
    wakeWithTheMouse();
    strikeBehindLocker(bound);
    unlock();
    story.strike(another);
    ASSERT_TRUE(story.isInFront(front));
    EXPECT_EQ(hidden.starts(), 0U);
}

std::string lockerName(const testing::TestParamInfo<Locker>& info) {
    auto name = info.param.lock.front();
    std::ranges::replace(name, '-', '_');
    return name;
}

const Locker cinnamonScreensaver{{"cinnamon-screensaver-command", "--lock"},
                                 {"cinnamon-screensaver-command", "--exit"},
                                 "org.cinnamon.ScreenSaver"};

INSTANTIATE_TEST_SUITE_P(Of, LockedScreenTest,
                         testing::Values(Locker{{"i3lock", "--nofork"}, {}, {}},
                                         Locker{{"xsecurelock"}, {}, {}}, cinnamonScreensaver),
                         lockerName);

INSTANTIATE_TEST_SUITE_P(Of, LockerDialogTest, testing::Values(cinnamonScreensaver), lockerName);

} // namespace
} // namespace hollowfernpike
