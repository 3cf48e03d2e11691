#include "desktop/ActivationRequests.h"
#include "desktop/Story.h"
#include "support/WaitUntil.h"
#include "support/WindowManagers.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

/// How many copies run after how many requests. A combination that is struck twice within a second
/// counts as held; these tests strike another one in between, so that each strike is a request of
/// its own.
class OneCopyTest : public testing::TestWithParam<const char*> {
protected:
    OneCopyTest() {
        story.bind(another, front);
        story.bind(third, witness);
    }

    Application& bindTarget(const ApplicationTraits& traits) {
        auto& target = story.install("Target", traits);
        story.bind(bound, target);
        story.startUtility();
        return target;
    }

    /// Asks for `front`, then for the target.
    void askAnew() {
        story.strike(another);
        story.strike(bound);
    }

    /// Whether all earlier requests are done: makes a last one and waits for its application.
    testing::AssertionResult isAllDone() {
        story.strike(third);
        return story.isInFront(witness);
    }

    /// Switches away and back, as people do before they close a window. If a window were closed as
    /// soon as it has opened, it might be gone before the utility looks.
    void useForAWhile(const Application& target) {
        story.strike(another);
        EXPECT_TRUE(story.isInFront(front));
        story.strike(bound);
        EXPECT_TRUE(story.isInFront(target));
    }

    void holdFor(std::uint32_t milliseconds) {
        const auto begin = story.pager.serverTime();
        story.hold(bound);
        ASSERT_TRUE(waitUntil([&] { return story.pager.serverTime() - begin >= milliseconds; }));
        story.letGo(bound);
    }

    /// Waits longer than a held key takes to repeat.
    void letTheKeysRest() {
        constexpr std::uint32_t rest = 1500;
        const auto begin = story.pager.serverTime();
        ASSERT_TRUE(waitUntil([&] { return story.pager.serverTime() - begin >= rest; }));
    }

    Story story{GetParam()};
    Application& front = story.open("Front");
    Application& witness = story.install("Witness");
};

TEST_P(OneCopyTest, ASlowStarterThatIsAskedForAgainAndAgainStartsOnceAndComesToTheFront) {
    auto& target = bindTarget({.options = {"--delay", "1500"}});
    story.strike(bound);
    askAnew();
    askAnew();
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_P(OneCopyTest, ASlowStarterIsNotBroughtForwardOnceSomethingElseWasAskedFor) {
    auto& target = bindTarget({.options = {"--delay", "4000"}});
    ActivationRequests requests(story.desktop.display());
    story.strike(bound);
    askAnew();
    story.strike(another);
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 1; }));
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(requests.count(), 2) << "for what was in front, and nothing else";
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(OneCopyTest, AProgramWithoutAWindowStartsOnce) {
    auto& target = bindTarget({.options = {"--no-window"}});
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 1; }));
    askAnew();
    askAnew();
    askAnew();
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(OneCopyTest, AProgramThatHandsOverAndEndsStartsOnceForAHoldAndOnceMoreForTheNext) {
    auto& target = bindTarget({.options = {"--no-window", "--hand-over"}});
    holdFor(2000);
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 1);
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 2; }));
    letTheKeysRest();
    story.strike(bound);
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 2) << "a copy stayed beside the first one";
    EXPECT_EQ(target.copies().size(), 2);
}

TEST_P(OneCopyTest, TheSameKeysHeldAgainAreTheNextHold) {
    auto& target = bindTarget({.options = {"--no-window", "--hand-over"}});
    holdFor(1000);
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 1 && target.copies().size() == 1; }));
    letTheKeysRest();
    holdFor(1000);
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 2);
}

TEST_P(OneCopyTest, AProgramThatHandsOverToASlowWindowStartsOnceForAHold) {
    auto& target = bindTarget({.options = {"--hand-over", "--delay", "1500"}});
    holdFor(2000);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 1);
    EXPECT_EQ(target.windows().size(), 1);
}

TEST_P(OneCopyTest, AWindowThatIsClosedWhileTheKeysAreHeldStaysClosed) {
    auto& target = bindTarget({});
    story.hold(bound);
    ASSERT_TRUE(story.isInFront(target));
    story.pager.close(target.windows().at(0));
    ASSERT_TRUE(waitUntil([&] { return target.copies().empty(); }));
    const auto begin = story.pager.serverTime();
    ASSERT_TRUE(waitUntil([&] { return story.pager.serverTime() - begin >= 1000; }));
    story.letGo(bound);
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(OneCopyTest, AProgramThatStaysBesideItsFirstCopyIsStartedTwiceAtMost) {
    auto& target = bindTarget({.options = {"--no-window"}});
    target.start();
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 1; }));
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 2; }));
    askAnew();
    askAnew();
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 2);
}

TEST_P(OneCopyTest, AProgramOfASingleInstanceComesBackFromTheTrayEachTime) {
    auto& target = bindTarget({.options = {"--single"}});
    story.strike(bound);
    for (std::size_t round = 1; round <= 4; ++round) {
        ASSERT_TRUE(waitUntil([&] { return target.windows().size() == round; }))
            << testing::PrintToString(target.log());
        EXPECT_TRUE(story.isActive(target.windows().back())) << round;
        EXPECT_TRUE(story.getsKeys(target));
        useForAWhile(target);
        EXPECT_TRUE(waitUntil([&] { return target.copies().size() == 1; }));
        EXPECT_EQ(target.starts(), round);
        story.pager.close(target.windows().back());
        ASSERT_TRUE(waitUntil([&] { return story.pager.stacking().size() == 1; }));
        askAnew();
    }
}

TEST_P(OneCopyTest, ASlowScriptBeforeTheProgramIsWaitedFor) {
    auto& target = bindTarget({.script = "sleep 1; \"$@\"; exit"});
    story.strike(bound);
    askAnew();
    askAnew();
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    ASSERT_TRUE(isAllDone());
    askAnew();
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(OneCopyTest, AWindowThatTellsNothingOfItsScriptEndsTheLaunchAllTheSame) {
    auto& target =
        bindTarget({.options = {"--class", "nobody,Nobody"}, .script = "sleep 1; \"$@\"; exit"});
    story.strike(bound);
    askAnew();
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(target.starts(), 1);
    story.strike(another); // once this is served, the utility knows of the window
    EXPECT_TRUE(story.isInFront(front));
    askAnew();
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 2; }));
    askAnew();
    ASSERT_TRUE(isAllDone());
    EXPECT_EQ(target.starts(), 2);
}

INSTANTIATE_TEST_SUITE_P(Under, OneCopyTest, windowManagers(), windowManagerName);

TEST(ColdStartTest, AWindowThatTakesLongerThanAStartUpNoticeIsStillTheOnlyOne) {
    Story story;
    auto& front = story.open("Front");
    auto& target = story.install("Target", {.options = {"--delay", "12500"}});
    story.bind(bound, target);
    story.bind(another, front);
    story.startUtility();
    const auto begin = story.pager.serverTime();
    const auto strikeAt = [&](std::uint32_t milliseconds) {
        ASSERT_TRUE(waitUntil([&] { return story.pager.serverTime() - begin >= milliseconds; }));
        story.strike(bound);
    };
    strikeAt(0);
    strikeAt(5000);
    strikeAt(11000);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
}

} // namespace
} // namespace hollowfernpike
