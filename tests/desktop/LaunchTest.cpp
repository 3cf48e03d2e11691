#include "desktop/Story.h"
#include "support/WaitUntil.h"
#include "support/WindowManagers.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const Combination next{38, control | option};

class LaunchTest : public testing::TestWithParam<const char*> {
protected:
    Story story{GetParam()};
    Application& front = story.open("Front");
};

TEST_P(LaunchTest, AnApplicationThatDoesNotRunStartsOnceAndGetsTheFocus) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_P(LaunchTest, ASlowStarterStillGetsTheFocus) {
    auto& target = story.install("Target", {.options = {"--delay", "500"}});
    story.bind(bound, target);
    story.startUtility();
    ASSERT_TRUE(story.getsKeys(front));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
}

TEST_P(LaunchTest, APressDuringTheLaunchStartsNoSecondCopy) {
    auto& target = story.install("Target", {.options = {"--delay", "500"}});
    auto& witness = story.install("Witness");
    story.bind(bound, target);
    story.bind(next, witness);
    story.startUtility();
    story.strike(bound);
    story.strike(bound);
    story.strike(next);
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 1; }));
    ASSERT_TRUE(waitUntil([&] { return witness.windows().size() == 1; }));
    EXPECT_EQ(target.starts(), 1);
    EXPECT_EQ(target.copies().size(), 1);
    EXPECT_TRUE(story.nobodySaw(bound));
}

TEST_P(LaunchTest, AnImpatientSecondPressDoesNotCostTheWindowItsFocus) {
    auto& target = story.install("Target", {.options = {"--delay", "500"}});
    story.bind(bound, target);
    story.startUtility();
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return target.starts() == 1; }));
    story.strike(bound);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_EQ(target.starts(), 1);
}

TEST_P(LaunchTest, AnApplicationWhoseWindowWasClosedIsLaunchedAnew) {
    auto& target = story.install("Target");
    story.bind(bound, target);
    story.bind(next, front);
    story.startUtility();
    story.strike(bound);
    ASSERT_TRUE(story.isInFront(target));
    story.pager.close(target.windows().at(0));
    ASSERT_TRUE(waitUntil([&] { return target.copies().empty(); }));
    story.strike(next);
    ASSERT_TRUE(story.isInFront(front));
    story.strike(bound);
    ASSERT_TRUE(waitUntil([&] { return target.windows().size() == 2; }));
    EXPECT_TRUE(story.isActive(target.windows().at(1)));
    EXPECT_TRUE(story.getsKeys(target));
}

TEST_P(LaunchTest, AMissingEntrySwallowsThePressAndTheNextShortcutWorks) {
    auto& target = story.install("Target");
    auto& gone = story.install("Gone");
    std::filesystem::remove(gone.entry());
    story.bind(bound, gone);
    story.bind(next, target);
    story.startUtility();
    story.strike(bound);
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.isInFront(front));
    story.strike(next);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.nobodySaw(bound));
    EXPECT_EQ(gone.starts(), 0);
}

TEST_P(LaunchTest, APathWithAZeroByteLaunchesNothing) {
    auto& target = story.install("Target");
    auto& witness = story.install("Witness");
    const auto longer = target.entry().string() + '\0' + "junk";
    story.bind(bound, {.path = longer, .name = "Target", .identifier = "Target"});
    story.bind(next, witness);
    story.startUtility();
    story.strike(bound);
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.isInFront(front));
    story.strike(next);
    EXPECT_TRUE(story.isInFront(witness));
    EXPECT_TRUE(story.nobodySaw(bound));
    EXPECT_EQ(target.starts(), 0);
}

TEST_P(LaunchTest, AMissingProgramSwallowsThePressAndTheNextShortcutWorks) {
    auto& target = story.install("Target");
    auto& gone = story.install("Gone");
    std::filesystem::remove(gone.program());
    story.bind(bound, gone);
    story.bind(next, target);
    story.startUtility();
    story.strike(bound);
    ASSERT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.isInFront(front));
    story.strike(next);
    EXPECT_TRUE(story.isInFront(target));
    EXPECT_TRUE(story.getsKeys(target));
    EXPECT_TRUE(story.nobodySaw(bound));
}

INSTANTIATE_TEST_SUITE_P(Under, LaunchTest, windowManagers(), windowManagerName);

TEST(FocusStealingTest, TheDesktopHoldsBackWindowsThatNobodyAskedFor) {
    Story story("metacity");
    auto& front = story.open("Front");
    const auto longAgo = story.pager.serverTime() - 1000;
    ASSERT_TRUE(story.getsKeys(front));
    auto& intruder = story.install("Intruder");
    intruder.start({{"DESKTOP_STARTUP_ID", "intruder_TIME" + std::to_string(longAgo)}});
    ASSERT_TRUE(waitUntil([&] { return intruder.windows().size() == 1; }));
    EXPECT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.isInFront(front));
}

} // namespace
} // namespace hollowfernpike
