#include "desktop/Story.h"
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
    Command program;
    Command request; ///< what asks the program to lock; empty if it does by itself
};

std::ostream& operator<<(std::ostream& stream, const Locker& locker) {
    return stream << locker.program.front();
}

/// A combination that another program holds, too, is only observed, and what is observed goes on
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
        locker_ = story.desktop.start(GetParam().program);
        ASSERT_TRUE(waitUntil([&] {
            if (!GetParam().request.empty()) {
                story.desktop.start(GetParam().request)->wait();
            }
            return input_.isTaken();
        })) << locker_->errors();
    }
    void unlock() {
        locker_.reset();
        ASSERT_TRUE(waitUntil([&] { return !input_.isTaken(); }));
    }

    /// Has the utility open its window, which it does behind the presses that came before.
    void waitForTheUtility() {
        story.run({HFP_PROGRAM});
        ASSERT_TRUE(waitUntil(
            [&] { return story.pager.classOf(story.pager.focusedWindow()) == "Hollowfernpike"; }));
    }

    Story story;
    KeyGrabber rival{story.desktop.display()};
    Application& front = story.open("Front");
    Application& hidden = story.install("Hidden");

private:
    std::unique_ptr<x11::Connection> connection_ = x11::Connection::open(story.desktop.display());
    x11::TakenInput input_{*connection_};
    std::unique_ptr<ChildProcess> locker_;
};

TEST_P(LockedScreenTest, NothingIsLaunchedBehindIt) {
    lock();
    story.strike(bound);
    story.strike(bound);
    waitForTheUtility();
    unlock();
    story.strike(another);
    ASSERT_TRUE(story.isInFront(front));
    EXPECT_EQ(hidden.starts(), 0U);

    story.strike(bound);
    EXPECT_TRUE(story.isInFront(hidden));
}

std::string lockerName(const testing::TestParamInfo<Locker>& info) {
    auto name = info.param.program.front();
    std::ranges::replace(name, '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(
    Of, LockedScreenTest,
    testing::Values(Locker{{"i3lock", "--nofork"}, {}}, Locker{{"xsecurelock"}, {}},
                    Locker{{"cinnamon-screensaver"}, {"cinnamon-screensaver-command", "--lock"}}),
    lockerName);

} // namespace
} // namespace hollowfernpike
