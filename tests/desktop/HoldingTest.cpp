#include "desktop/ActivationRequests.h"
#include "desktop/Story.h"
#include "support/WaitUntil.h"
#include "support/WindowManagers.h"

#include <gtest/gtest.h>

namespace hollowfernpike {
namespace {

using namespace test;

const Combination held{37, control | option};

class HoldingTest : public testing::TestWithParam<const char*> {
protected:
    Story story{GetParam()};
    Application& front = story.open("Front");

    /// Waits until the held key has repeated that often with its target running: each repeat asks
    /// for the target again.
    bool seesRepeats(std::size_t count) {
        const auto before = requests.count();
        return waitUntil([&] { return requests.count() >= before + count; });
    }

    ActivationRequests requests{story.desktop.display()};
};

TEST_P(HoldingTest, StartsOneCopyOfASlowStarterAndLeavesItInFront) {
    // A held key begins to repeat after two thirds of a second.
    auto& slow = story.install("Slow", {.options = {"--delay", "1500"}});
    auto& witness = story.install("Witness");
    story.bind(held, slow);
    story.bind(another, witness);
    story.startUtility();

    story.hold(held);
    ASSERT_TRUE(story.isInFront(slow));
    ASSERT_TRUE(seesRepeats(5));
    story.letGo(held);
    EXPECT_TRUE(story.isInFront(slow));
    EXPECT_TRUE(story.getsKeys(slow));

    story.strike(another);
    ASSERT_TRUE(story.isInFront(witness));
    EXPECT_EQ(slow.starts(), 1);
    EXPECT_EQ(slow.copies().size(), 1);
    EXPECT_TRUE(story.nobodySaw(held));
}

TEST_P(HoldingTest, DoesNoHarmToATargetThatIsInFrontAlready) {
    story.bind(held, front);
    story.startUtility();
    story.hold(held);
    ASSERT_TRUE(seesRepeats(10));
    story.letGo(held);
    EXPECT_TRUE(story.isInFront(front));
    EXPECT_TRUE(story.getsKeys(front));
    EXPECT_TRUE(story.nobodySaw(held));
    EXPECT_EQ(front.starts(), 1);
}

INSTANTIATE_TEST_SUITE_P(Under, HoldingTest, windowManagers(), windowManagerName);

} // namespace
} // namespace hollowfernpike
